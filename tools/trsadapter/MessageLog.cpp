#include "tools/trsadapter/MessageLog.h"

#include "adapter/ZYN_AdapterConstants.h"
#include "broker/PrintableText.h"
#include "catalogue/Text.h"
#include "platform/NmaLogHelper.h"
#include "tools/trsadapter/XmlText.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

namespace trs::adapter {

namespace {

constexpr char const* rootElement = "log";

// Makes the directory when it is missing. Empty, or why no log may be kept in it: another user who can write there
// could have the log written to any file of this one's.
std::string checkDirectory(std::string const& directory)
{
    struct stat status {};
    if ((::mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST) || ::stat(directory.c_str(), &status) != 0) {
        return std::strerror(errno); // NOLINT(concurrency-mt-unsafe): the C library's is thread-safe
    }
    if (!S_ISDIR(status.st_mode)) {
        return "it is not a directory";
    }
    if ((status.st_uid != ::geteuid() && status.st_uid != 0) || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        return "other users can write there";
    }
    return {};
}

} // namespace

MessageLog::MessageLog(std::string directory, std::size_t fullSize)
    : directory_(std::move(directory)), fullSize_(fullSize)
{
}

std::string MessageLog::open(std::string const& name)
{
    std::lock_guard const lock(mutex_);
    if (file_ != nullptr && name == name_) {
        return {};
    }
    end();
    name_ = name;
    return begin();
}

bool MessageLog::isOpen() const
{
    std::lock_guard const lock(mutex_);
    return file_ != nullptr;
}

std::string MessageLog::path() const
{
    std::lock_guard const lock(mutex_);
    return directory_ + '/' + name_;
}

void MessageLog::close()
{
    std::lock_guard const lock(mutex_);
    end();
}

void MessageLog::add(char const* element, std::vector<Attribute> const& attributes, std::string const& text,
                     std::size_t most)
{
    std::string entry =
        std::string("<") + element + " time=\"" + catalogue::timestamp(std::chrono::system_clock::now()) + '"';
    for (auto const& [name, value] : attributes) {
        ((((entry += ' ') += name) += "=\"") += xmlText(value)) += '"';
    }
    std::string_view rest = text;
    std::string const kept = xmlTextOfHead(rest, most);
    entry += rest.empty() ? std::string() : " length=\"" + std::to_string(text.size()) + '"';
    entry += kept.empty() ? "/>\n" : '>' + kept + "</" + element + ">\n";

    std::lock_guard const lock(mutex_);
    if (file_ == nullptr) {
        return;
    }
    write(std::move(entry));
    if (file_ != nullptr && size_ >= fullSize_ && end()) {
        if (std::string const why = begin(); !why.empty()) {
            NmaLogHelper(3, __FILE__, __func__, __LINE__).message("%s", why.c_str());
        }
    }
}

std::string MessageLog::begin()
{
    std::string const path = directory_ + '/' + name_;
    std::string why = checkDirectory(directory_);
    if (!why.empty()) {
        return "log directory " + printable(directory_) + ": " + why;
    }
    for (int i = keptFiles; i > 0; --i) {
        std::string const older = i == 1 ? path : path + '.' + std::to_string(i - 1);
        std::rename(older.c_str(), (path + '.' + std::to_string(i)).c_str()); // fails where there is none
    }
    auto file = std::make_unique<ZYN_ZipStream>(path.c_str(), ZYN_ZipStream::out);
    if (!file->is_open()) {
        return "log file " + printable(path) + ": " +
               std::strerror(errno); // NOLINT(concurrency-mt-unsafe): the C library's is thread-safe
    }
    ::chmod(path.c_str(), S_IRUSR | S_IWUSR);
    file_ = std::move(file);
    size_ = 0;
    write(xoh::XML_DECLARATION + "\n<" + rootElement + ">\n");
    return {};
}

// Whether the file, if there was one, is complete.
bool MessageLog::end()
{
    if (file_ == nullptr) {
        return true;
    }
    write(std::string("</") + rootElement + ">\n");
    if (file_ == nullptr) {
        return false;
    }
    errno = 0;
    file_->close();
    bool const isComplete = check();
    file_.reset();
    return isComplete;
}

void MessageLog::write(std::string text)
{
    errno = 0;
    file_->write(text.data(), static_cast<unsigned int>(text.size()));
    size_ += text.size();
    check();
}

// Whether the file has taken all; else says so and gives it up.
bool MessageLog::check()
{
    if (!file_->fail()) {
        return true;
    }
    std::string const why =
        errno != 0 ? std::strerror(errno) : "it takes no more"; // NOLINT(concurrency-mt-unsafe): as above
    NmaLogHelper(3, __FILE__, __func__, __LINE__)
        .message("log file %s is not complete, and closed: %s", trs::printable(directory_ + '/' + name_).c_str(),
                 why.c_str());
    file_.reset();
    return false;
}

std::string MessageLog::withoutPassword(std::string const& document)
{
    if (document.find('\0') != std::string::npos) {
        return "(" + std::to_string(document.size()) + " bytes in an encoding that is not kept)";
    }
    std::size_t const begin = document.find('<' + xoh::ELEMENT_PASSWORD);
    if (begin == std::string::npos) {
        return document;
    }
    // All between the first one's begin and the last one's end, whatever a document has there.
    std::size_t const end = document.rfind("</" + xoh::ELEMENT_PASSWORD);
    return document.substr(0, begin) + '<' + xoh::ELEMENT_PASSWORD + ">***" +
           (end != std::string::npos && end > begin ? document.substr(end) : std::string());
}

} // namespace trs::adapter
