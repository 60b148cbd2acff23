// The parts of the serving adapter that are easier to see alone.
#include "adapter/ZYN_ZipStream.h"
#include "tests/support/ConfigFiles.h"
#include "tests/tools/Service.h"
#include "tools/trsadapter/Credentials.h"
#include "tools/trsadapter/Document.h"
#include "tools/trsadapter/LoginPace.h"
#include "tools/trsadapter/MessageLog.h"
#include "tools/trsadapter/Service.h"
#include "tools/trsadapter/Sessions.h"
#include "tools/trsadapter/XmlText.h"

#include <algorithm>
#include <crypt.h>
#include <csignal>
#include <dlfcn.h>
#include <sys/resource.h>

extern "C" std::FILE* fopen(char const* path, char const* mode)
{
    static auto const libcs = reinterpret_cast<decltype(&fopen)>(dlsym(RTLD_NEXT, "fopen"));
    return libcs(support::ConfigFiles::redirected(path).c_str(), mode);
}

extern "C" int access(char const* path, int mode)
{
    static auto const libcs = reinterpret_cast<decltype(&access)>(dlsym(RTLD_NEXT, "access"));
    return libcs(support::ConfigFiles::redirected(path).c_str(), mode);
}

namespace {

std::vector<std::string> hashed; // with which method, cost and salt

} // namespace

extern "C" char* crypt_rn(char const* phrase, char const* setting, void* data, int size) noexcept
{
    static auto const libcrypts = reinterpret_cast<decltype(&crypt_rn)>(dlsym(RTLD_NEXT, "crypt_rn"));
    hashed.emplace_back(setting);
    return libcrypts(phrase, setting, data, size);
}

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

TEST(XmlText, CarriesAnyBytes)
{
    std::pair<std::string, std::string> const cases[] = {
        {"a<b>&\"c'", "a&lt;b&gt;&amp;&quot;c'"},
        {"\t\n\r\0\x1f\x7f"s, "&#9;&#10;&#13;\\x00\\x1f\x7f"},
        {"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80", "\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80"},
        {"\xc3", "\\xc3"},
        {"\xc0\xaf", "\\xc0\\xaf"},                   // overlong
        {"\xed\xa0\x80", "\\xed\\xa0\\x80"},          // a surrogate
        {"\xef\xbf\xbf", "\\xef\\xbf\\xbf"},          // no character
        {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"}, // beyond the last
        {"\xe2\x82<", "\\xe2\\x82&lt;"},
    };
    for (auto const& [bytes, text] : cases) {
        EXPECT_EQ(trs::adapter::xmlText(bytes), text);
    }
    std::string all;
    for (int i = 0; i < 0x10000; ++i) {
        all += {static_cast<char>(i / 256), static_cast<char>(i)};
    }
    std::istringstream stream("<a>" + trs::adapter::xmlText(all) + "</a>");
    EXPECT_EQ(ZYN_XmlParser(stream).XML_GetErrorCode(), XML_ERROR_NONE);
}

TEST(Document, IsWhatTheParserReads)
{
    std::vector<trs::adapter::Field> const fields{{"/BTSMessage/BTSMessageHdr/_to", "a<b"},
                                                  {"/BTSMessage/BTSMessageHdr/_from", ""},
                                                  {"/BTSMessage/A/B/C", "1"},
                                                  {"/BTSMessage/A/B/D", "2"},
                                                  {"/BTSMessage/A/E", "3"},
                                                  {"/BTSMessage/A", "4"}};
    std::string const document = trs::adapter::writeDocument(fields);
    EXPECT_THAT(document, testing::HasSubstr("<A><B><C>1</C><D>2</D></B><E>3</E>4</A></BTSMessage>"));
    std::istringstream stream(document);
    ZYN_XmlParser const parsed(stream);
    EXPECT_EQ(parsed.getXohMsgType(), "A");
    for (auto const& [path, value] : fields) {
        EXPECT_EQ(parsed.getValue(path), value);
    }
}

TEST(Sessions, AreOneAtATimeAndEndWithoutMessages)
{
    std::chrono::steady_clock::time_point now{};
    trs::adapter::Sessions sessions(60s, [&now] { return now; });
    trs::adapter::Sessions::Session active;
    trs::adapter::Sessions::Session const first = sessions.begin("anna", "10.0.0.1", "", active).value();
    EXPECT_EQ(first.id.size(), 32U);
    EXPECT_FALSE(sessions.begin("bert", "10.0.0.2", "", active));
    EXPECT_EQ(active.user + active.address, "anna10.0.0.1");

    for (int i = 0; i < 3; ++i) {
        now += 59s;
        EXPECT_EQ(sessions.check(first.id, "10.0.0.1").standing, trs::adapter::Sessions::Standing::active);
    }
    now += 59s;
    EXPECT_EQ(sessions.check(first.id, "10.0.0.2").standing, trs::adapter::Sessions::Standing::foreign)
        << "which keeps none alive";
    EXPECT_EQ(sessions.check("", "10.0.0.1").standing, trs::adapter::Sessions::Standing::none);
    now += 1s;
    EXPECT_EQ(sessions.check(first.id, "10.0.0.1").standing, trs::adapter::Sessions::Standing::none);

    trs::adapter::Sessions::Session const second = sessions.begin("bert", "10.0.0.2", first.id, active).value();
    EXPECT_NE(second.id, first.id);
    trs::adapter::Sessions::Session const again = sessions.begin("anna", "10.0.0.2", second.id, active).value();
    EXPECT_EQ(sessions.check(second.id, "10.0.0.2").standing, trs::adapter::Sessions::Standing::none)
        << "the client has a new one";
    sessions.end(second.id);
    EXPECT_EQ(sessions.active().value().id, again.id);
    sessions.end(again.id);
    EXPECT_FALSE(sessions.active());
}

TEST(Service, ListensWhereTheSiteConfigurationSays)
{
    support::ConfigFiles const files;
    std::string address;
    int port = 0;
    EXPECT_EQ(trs::adapter::Service::configuredPlace(address, port), "");
    EXPECT_EQ(address + ':' + std::to_string(port), "127.0.0.1:12000");
    files.set("btsomIpAddr.conf", "192.168.255.16\n");
    files.set("btsomPort.conf", "8080\n");
    EXPECT_EQ(trs::adapter::Service::configuredPlace(address, port), "");
    EXPECT_EQ(address + ':' + std::to_string(port), "192.168.255.16:8080");
    for (char const* const wrong : {"", "0", "65536", "-1"}) {
        files.set("btsomPort.conf", wrong);
        EXPECT_THAT(trs::adapter::Service::configuredPlace(address, port), testing::HasSubstr("btsomPort.conf: "))
            << wrong;
    }
}

class Parts : public ServiceTest {};

TEST_F(Parts, CredentialsAreReadAnewForEveryLogin)
{
    trs::LogCapture const captured;
    writeCredentials(users);
    trs::adapter::Credentials const file(credentials);
    EXPECT_EQ(file.check(), "");
    EXPECT_TRUE(file.accepts("anna", "secret"));
    EXPECT_FALSE(file.accepts("anna", "secret2"));
    EXPECT_FALSE(file.accepts("anna", "secret\0x"s));
    EXPECT_FALSE(file.accepts("carl", "secret"));
    EXPECT_FALSE(file.accepts("", ""));
    EXPECT_FALSE(file.accepts("anna", std::string(5000, 'x')));
    writeCredentials("\n bert:" + users.substr(users.find("$6$")));
    EXPECT_FALSE(file.accepts("anna", "secret")) << "bert is there twice";
    EXPECT_TRUE(captured.contains("user 'bert' is there twice"));
    writeCredentials("bert:" + users.substr(users.find("$6$"), users.find("\nbert") - users.find("$6$")));
    EXPECT_FALSE(file.accepts("anna", "secret"));
    EXPECT_TRUE(file.accepts("bert", "secret"));
    writeCredentials(users, 0604);
    EXPECT_FALSE(file.accepts("anna", "secret"));
    EXPECT_TRUE(captured.contains("its mode is 0604"));
    for (char const* const wrong : {"anna\n", ":x\n", "anna:\n", "anna:*\n", "anna:secret\n", "anna:$1$salt$x\n"}) {
        writeCredentials(wrong);
        EXPECT_THAT(file.check(), testing::HasSubstr(", line 1: ")) << wrong;
    }
    EXPECT_THAT(trs::adapter::Credentials("/dev/zero").check(), testing::HasSubstr("not a regular file"));
}

TEST_F(Parts, LoginsHashTheSameWhoeverLogsIn)
{
    // Each with its own salt, in an order that is not that of cost.
    char const* const settings[] = {"$6$rounds=1000$a1",
                                    "$6$rounds=3000$b1",
                                    "$6$rounds=3000$b2",
                                    "$7$7U..../....c1",
                                    "$6$d1",
                                    "$6$d2",
                                    "$2b$04$eeeeeeeeeeeeeeeeeeeeee",
                                    "$y$j75$f1f1",
                                    "$7$7U..../....c2",
                                    "$y$j75$f2f2"};
    std::string text;
    for (char const* const setting : settings) {
        crypt_data room{};
        text += (text.empty() ? "first:" : "\nuser" + std::to_string(text.size()) + ':');
        text += ::crypt_r("secret", setting, &room);
    }
    writeCredentials(text);
    trs::adapter::Credentials const file(credentials);
    EXPECT_EQ(file.check(), "");
    std::string const last = text.substr(text.rfind('\n') + 1, text.rfind(':') - text.rfind('\n') - 1);
    for (std::string const& user : {"nobody"s, "first"s, last}) {
        hashed.clear();
        EXPECT_EQ(file.accepts(user, "secret"), user != "nobody");
        for (std::string& setting : hashed) {
            setting.resize(setting.starts_with("$6$d") ? 3 : 6);
        }
        EXPECT_THAT(hashed, testing::UnorderedElementsAre("$6$rou", "$6$rou", "$7$7U.", "$6$", "$2b$04", "$y$j75"))
            << user;
    }
}

TEST(LoginPace, HoldsBackWhoSendsWrongPasswordsAndNobodyElse)
{
    trs::adapter::LoginPace pace;
    trs::adapter::LoginPace::Time now{};
    auto const waits = [&](std::string const& address, std::string const& user,
                           trs::adapter::LoginPace::Duration patience = 5s) {
        auto const begin = pace.admit(address, user, now, patience);
        return begin ? std::chrono::duration_cast<std::chrono::milliseconds>(*begin - now).count() : -1;
    };
    for (int const expected : {0, 250, 500, 1000, 2000, 4000, 4000}) {
        EXPECT_EQ(waits("10.0.0.1", "anna"), expected);
        now += std::chrono::milliseconds(expected);
        pace.noteWrong("10.0.0.1", "anna", now);
    }
    EXPECT_EQ(waits("10.0.0.1", "bert"), 0);
    EXPECT_EQ(waits("10.0.0.2", "anna"), 0);
    EXPECT_EQ(waits("10.0.0.1", "anna", 3999ms), -1) << "which takes nobody's turn";
    EXPECT_EQ(waits("10.0.0.1", "anna"), 4000);
    EXPECT_EQ(waits("10.0.0.1", "anna"), -1) << "behind the one that waits";
    now += 4s;
    EXPECT_EQ(waits("10.0.0.1", "anna"), 4000);

    for (int i = 0; i < 5000; ++i) {
        pace.noteWrong("10.0.0.3", std::to_string(i), now);
        pace.noteWrong("10.0.0.3", std::string(100'000, 'x') + std::to_string(i), now);
    }
    EXPECT_EQ(pace.remembered(), trs::adapter::LoginPace::mostRemembered);
    EXPECT_EQ(waits("10.0.0.3", std::string(100'000, 'x')), 4000) << "long names count by their beginning";
    now += 4s;
    EXPECT_EQ(waits("10.0.0.1", "anna"), 4000) << "many others do not make it forgotten";
    pace.noteRight("10.0.0.1", "anna");
    EXPECT_EQ(waits("10.0.0.1", "anna"), 0);
    EXPECT_EQ(waits("10.0.0.3", "4999"), 0) << "250 ms are over";
    now += 10min;
    EXPECT_EQ(waits("10.0.0.3", std::string(100'000, 'x')), 0);
}

TEST_F(Parts, LogsBeginNewFilesWhenTheyAreFull)
{
    {
        trs::adapter::MessageLog log(logDirectory, 1000);
        EXPECT_EQ(log.open("x.gz"), "");
        for (int i = 0; i < 100; ++i) {
            log.add("entry", {{"number", std::to_string(i)}}, std::string(900, 'x'), 900);
        }
    }
    std::string all;
    for (int i = trs::adapter::MessageLog::keptFiles; i >= 0; --i) {
        all += log("x.gz" + (i == 0 ? ""s : '.' + std::to_string(i)));
    }
    EXPECT_THAT(all, testing::AllOf(testing::HasSubstr("number=\"99\""), testing::HasSubstr("number=\"90\""),
                                    testing::Not(testing::HasSubstr("number=\"50\""))));
    EXPECT_FALSE(std::filesystem::exists(logDirectory + "/x.gz.10"));
    EXPECT_EQ(std::filesystem::status(logDirectory + "/x.gz").permissions(), std::filesystem::perms(0600));
}

TEST_F(Parts, LogsTellOnceThatTheirFileTakesNoMore)
{
    // Stands in for a full disk.
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
    auto const limitFiles = [&former](rlim_t most) {
        rlimit const limit{most, former.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    };
    auto* const formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    std::string noise(100'000, '\0');
    std::generate(noise.begin(), noise.end(),
                  [state = 1U]() mutable { return static_cast<char>((state = state * 1103515245 + 12345) >> 16); });
    trs::LogCapture const captured;
    trs::adapter::MessageLog log(logDirectory, 1'000'000);
    EXPECT_EQ(log.open("x.gz"), "");
    limitFiles(10'000);
    for (int i = 0; i < 3; ++i) {
        log.add("entry", {}, noise, noise.size() * 6);
    }
    EXPECT_FALSE(log.isOpen());
    EXPECT_EQ(log.open("y.gz"), "");
    log.close(); // so little that only closing writes it
    EXPECT_EQ(log.open("z.gz"), "");
    limitFiles(10);
    log.close();
    limitFiles(former.rlim_cur);
    static_cast<void>(std::signal(SIGXFSZ, formerHandler));

    std::vector<std::string> told;
    for (trs::LogEntry const& entry : captured.entries()) {
        told.push_back(entry.text);
    }
    EXPECT_THAT(told, testing::ElementsAre(testing::HasSubstr("/x.gz is not complete, and closed: File too large"),
                                           testing::HasSubstr("/z.gz is not complete, and closed: File too large")));
}

TEST(MessageLog, LeavesOutWhatAPasswordElementContains)
{
    std::pair<std::string, std::string> const cases[] = {
        {"<a>b</a>", "<a>b</a>"},
        {"x<_password>p</_password>y", "x<_password>***</_password>y"},
        {"<_password a='1'>p", "<_password>***"},
        {"<_password>p</_password><_password><![CDATA[</_password>q]]>r</_password>z", "<_password>***</_password>z"},
        {"</_password><_password>p", "</_password><_password>***"},
        {"<\0_\0"s, "(4 bytes in an encoding that is not kept)"},
    };
    for (auto const& [document, kept] : cases) {
        EXPECT_EQ(trs::adapter::MessageLog::withoutPassword(document), kept);
    }
}

} // namespace
