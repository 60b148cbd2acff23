// Configuration files for a test, in place of the machine's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace support {

// While it exists, the library finds the configuration files of this object, at first none, under their fixed paths,
// and this machine's own, if it has any, stay untouched.
//
// A test program that uses it defines the file functions that are called: they stand before libc's of that name for the
// whole process, the library included, because the dynamic linker looks into the program first. So the library needs no
// way in for tests.
class ConfigFiles {
public:
    ConfigFiles() { current = this; }
    ConfigFiles(ConfigFiles const&) = delete;
    ConfigFiles& operator=(ConfigFiles const&) = delete;
    ~ConfigFiles()
    {
        current = nullptr;
        std::filesystem::remove_all(directory_);
    }

    void set(std::string const& name, std::string const& content) const
    {
        std::ofstream(directory_ + '/' + name, std::ios::binary) << content;
    }

    // Where to find what the library asks for.
    static std::string redirected(std::string const& path)
    {
        bool const isConfig = current != nullptr && path.starts_with(configDirectory);
        return isConfig ? current->directory_ + '/' + path.substr(configDirectory.size()) : path;
    }

private:
    static constexpr std::string_view configDirectory = "/usr/local/etc/config/";
    static inline ConfigFiles* current = nullptr;

    static std::string made()
    {
        std::string path = "/tmp/trsman-config-XXXXXX";
        return mkdtemp(path.data());
    }
    std::string const directory_ = made();
};

} // namespace support
