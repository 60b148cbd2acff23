// trsadapter serve with a unit, and curl as its client.
#include "tests/tools/Service.h"

#include <memory>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Serving : public ServiceTest {};

TEST_F(Serving, AnswersEveryKindOfMessageInItsWords)
{
    Unit sim = unit();
    Adapter child = serve();

    Reply reply = post(operation("supervision"));
    EXPECT_EQ(reply.status, 401);
    EXPECT_EQ(reply.value("/HttpUnauthorized/_failReason"), "no session");
    reply = post(login("anna", "wrong"));
    EXPECT_EQ(reply.status, 401);
    EXPECT_EQ(reply.value("/LoginResponse/_authenticate"), "failed");
    EXPECT_EQ(reply.value("/LoginResponse/_failReason"), "invalidLogin");
    EXPECT_EQ(reply.session, "");

    reply = post(login("bert", "öß&amp;&lt;"));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.value("/BTSMessageHdr/_to"), "DOV");
    EXPECT_EQ(reply.value("/BTSMessageHdr/_from"), "KEP");
    EXPECT_EQ(reply.value("/BTSMessageHdr/_seqNumber"), "12");
    EXPECT_EQ(reply.value("/BTSMessageHdr/_btsId"), "4711");
    EXPECT_EQ(reply.value("/LoginResponse/_authenticate"), "success");
    std::string const session = reply.session;

    reply = post(login("anna", "secret"));
    EXPECT_EQ(reply.status, 403);
    EXPECT_EQ(reply.value("/LoginResponse/_failReason"), "activeConnection");
    EXPECT_EQ(reply.value("/LoginResponse/ActiveConnection/_userName"), "bert");
    EXPECT_EQ(reply.value("/LoginResponse/ActiveConnection/_ipaddress"), "127.0.0.1");

    reply = post(operation("supervision"), session);
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.value("/XOHOperation"), "ackNack");
    EXPECT_EQ(reply.value("/XOHOperation/ErrorTag"), "success");
    reply = post(operation("resetRequest"), session); // a known one, which nothing here carries out
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.value("/XOHOperation/ErrorTag"), "executionError");
    reply = post(operation("sing&amp;dance"), session);
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.value("/unknownMessage/_failReason"), "sing&dance");
    EXPECT_EQ(post(message("<Whatever/>"), session).value("/unknownMessage/_failReason"), "Whatever");
    reply = post(operation("supervision"), session, {"--interface", "127.0.0.2"});
    EXPECT_EQ(reply.status, 403);
    EXPECT_THAT(reply.body, HasSubstr("<HttpForbidden>"));

    reply = post(message("<Disconnect/>"), session);
    EXPECT_EQ(reply.status, 200);
    EXPECT_THAT(reply.body, HasSubstr("<DisconnectReply></DisconnectReply>"));
    EXPECT_THAT(reply.head, HasSubstr("Max-Age=0"));
    EXPECT_EQ(post(operation("supervision"), session).status, 401);
    EXPECT_EQ(post(login("anna", "secret")).status, 200);
    EXPECT_THAT(curl("metrics").body,
                AllOf(HasSubstr("trsadapter_messages_total{kind=\"LoginRequest\",result=\"success\"} 2\n"),
                      HasSubstr("trsadapter_messages_total{kind=\"HttpSupervision\",result=\"success\"} 1\n"),
                      HasSubstr("trsadapter_http_responses_total{code=\"403\"} 2\n"),
                      HasSubstr("trsadapter_server_calls_total{outcome=\"busy\"} 0\n"),
                      HasSubstr("trsadapter_server_call_seconds_bucket{le=\"+Inf\"} 0\n"),
                      HasSubstr("trsadapter_session_active 1\n")));
}

TEST_F(Serving, SaysWhatIsWrongWithADocument)
{
    Unit sim = unit();
    Adapter child = serve();
    std::pair<std::string, std::string> const cases[] = {
        {"", "no element found at line 1"},
        {"<BTSMessage>\n<a></b>", "mismatched tag at line 2"},
        {message("<a>"), "mismatched tag at line 1"},
        {"<other><LoginRequest/></other>", "no message in /BTSMessage"},
        {"<BTSMessage><BTSMessageHdr/></BTSMessage>", "no message in /BTSMessage"},
        {"<!DOCTYPE b [<!ENTITY a 'x'><!ENTITY b '" + std::string(5000, 'a') + "'>]>" + message("<a>&b;</a>"),
         "parsing aborted at line 1"},
    };
    for (auto const& [document, reason] : cases) {
        Reply const reply = post(document);
        EXPECT_EQ(reply.status, 400) << document;
        EXPECT_EQ(reply.value("/HttpBadRequest/_failReason"), reason);
    }
}

TEST_F(Serving, ServesNothingButItsPaths)
{
    Unit sim = unit();
    Adapter child = serve({"--max-body", "1000"});
    EXPECT_THAT(curl("nowhere").body, HasSubstr("GET /health"));
    EXPECT_EQ(curl("nowhere", {"--data", "x"}).status, 404);
    Reply const reply = curl("", {"--request", "DELETE"});
    EXPECT_EQ(reply.status, 405);
    EXPECT_THAT(reply.head, HasSubstr("Allow: POST"));
    EXPECT_EQ(curl("health", {"--data", "x"}).status, 405);
    EXPECT_EQ(curl("health", {"--head"}).status, 200);
    EXPECT_EQ(post(std::string(1001, ' ')).status, 413);
    EXPECT_EQ(post(std::string(100'000, ' '), "", {"--header", "Transfer-Encoding: chunked"}).status, 413);
    EXPECT_EQ(post(std::string(1000, ' ')).status, 400);
    for (char const* const type : {"multipart/form-data; boundary=x", "Multipart/Form-Data", "multipart/mixed"}) {
        Reply const several = post("--x\r\n\r\n--x--", "", {"--header", std::string("Content-Type: ") + type});
        EXPECT_EQ(several.status, 415) << type;
        EXPECT_THAT(several.head, Not(HasSubstr("EXCEPTION_WHAT")));
    }
}

TEST_F(Serving, FollowsTheUnit)
{
    auto sim = std::make_unique<Unit>(endpoint, Arguments{"--address", "10.0.0.7"});
    Adapter child = serve();
    EXPECT_THAT(curl("health").body,
                AllOf(HasSubstr("\"unit\": \"reached\""), HasSubstr("\"btsId\": 4711"),
                      HasSubstr("\"publicAddress\": \"10.0.0.7\""), HasSubstr("\"transportAddress\": \"10.1.0.7\"")));
    sim->does("announce 10.0.0.8");
    child.readUntil("applied 10.0.0.8");
    EXPECT_THAT(curl("metrics").body, HasSubstr("public_address=\"10.0.0.8\""));
    sim->does("announce \"\xff\x1b\"");
    child.readUntil("applied \\xff\\x1b");
    EXPECT_THAT(curl("health").body, HasSubstr("\"publicAddress\": \"\xef\xbf\xbd\\u001b\""));

    sim.reset();
    child.readUntil("the agent is lost");
    Reply const reply = curl("health");
    EXPECT_EQ(reply.status, 503);
    EXPECT_THAT(reply.body, HasSubstr("\"unit\": \"unreachable\""));
    EXPECT_EQ(post(login("anna", "secret")).status, 200) << "clients are served all the same";

    sim = std::make_unique<Unit>(endpoint, Arguments{"--address", "10.0.0.9"});
    child.readUntil("applied 10.0.0.9");
    child.readUntil("the agent is reached");
    EXPECT_EQ(curl("health").status, 200);
}

TEST_F(Serving, StartsWithoutAUnitAndRenamesItsLogWhenThereIsOne)
{
    Adapter child = serve();
    EXPECT_EQ(curl("health").status, 503);
    EXPECT_EQ(post(login("anna", "secret")).status, 200);
    Unit sim = unit({"--address", "10.0.0.7"});
    child.readUntil("logging to " + logDirectory + "/ruem_wbts_4711"); // the former one is whole then
    EXPECT_THAT(log("ruem_wbts_-1.xml.gz"), HasSubstr("result=\"success\""));
    EXPECT_EQ(post(message("<Disconnect/>")).status, 401);
    child.signal(SIGTERM);
    EXPECT_EQ(child.waitForExit(), 0);
    EXPECT_THAT(log(), HasSubstr("kind=\"HttpUnauthorized\""));
}

TEST_F(Serving, LogsEveryMessageAndAlarmButNoPassword)
{
    Unit sim = unit();
    {
        Adapter child = serve();
        EXPECT_TRUE(child.writeLine("alarm 1,2"));
        child.readUntil("accepted");
        EXPECT_TRUE(child.writeLine("alarm 7,7"));
        child.readUntil("invalid");
        EXPECT_THAT(curl("metrics").body, AllOf(HasSubstr("trsadapter_alarms_total{outcome=\"accepted\"} 1\n"),
                                                HasSubstr("trsadapter_alarm_failures_total{reason=\"invalid\"} 1\n")));
        post(login("anna", "sesame"));
        std::string const session = post(login("anna", "secret")).session;
        for (int i = 0; i < 20; ++i) {
            post(operation("supervision"), session);
        }
        post("<BTSMessage><LoginRequest><_password>sesame");
        post("\x01<&>\xff");
        child.signal(SIGTERM);
        EXPECT_EQ(child.waitForExit(), 0);
    }
    std::string const text = log();
    EXPECT_THAT(text, AllOf(HasSubstr("<alarm time=\"20"), HasSubstr("type=\"1\" state=\"2\" outcome=\"delivered and"),
                            HasSubstr("&lt;_password&gt;***&lt;/_password&gt;"), HasSubstr("\\x01&lt;&amp;&gt;\\xff"),
                            Not(HasSubstr("secret")), Not(HasSubstr("sesame"))));
    std::string const received = "user=\"anna\" kind=\"HttpSupervision\" result=\"success\" status=\"200\"";
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(received, at)) != std::string::npos; ++at) {
        ++count;
    }
    EXPECT_EQ(count, 20U);

    Adapter child = serve(); // what was logged is kept
    EXPECT_TRUE(child.writeLine("quit"));
    EXPECT_EQ(child.waitForExit(), 0);
    EXPECT_EQ(log("ruem_wbts_4711.xml.gz.1"), text);
}

TEST_F(Serving, LogsNoMoreOfADocumentThanItsClientMayWrite)
{
    Unit sim = unit();
    std::string const filler(50'000, '"'); // each takes six bytes in the log
    {
        Adapter child = serve({"--max-body", "100000"});
        post(filler);
        post(message("<_seqNumber>" + filler + "</_seqNumber>"));
        EXPECT_EQ(post(login("anna", "wrong" + filler)).status, 401);
        std::string const session = post(login("anna", "secret")).session;
        post(operation("supervision") + filler, session);
        child.signal(SIGTERM);
        EXPECT_EQ(child.waitForExit(), 0);
    }
    std::string const text = log();
    EXPECT_THAT(text, AllOf(HasSubstr("status=\"400\" length=\"50000\">&quot;"), HasSubstr("length=\"50")));
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        bool const isStrangers = line.find("user=\"anna\"") == std::string::npos;
        EXPECT_LT(line.size(), isStrangers ? 4096 + 200 : 100'000 + 200) << line.substr(0, 200);
    }
}

TEST_F(Serving, EndsTheSessionWhenItsOperatorSays)
{
    Unit sim = unit();
    Adapter child = serve();
    std::string const session = post(login("anna", "secret")).session;
    EXPECT_TRUE(child.writeLine("session"));
    EXPECT_EQ(child.readLine(), "session of anna from 127.0.0.1");
    EXPECT_TRUE(child.writeLine("logout"));
    EXPECT_EQ(child.readLine(), "session ended");
    EXPECT_EQ(post(operation("supervision"), session).status, 401);
}

TEST_F(Serving, RefusesToStartWithoutWhatItNeeds)
{
    Unit sim = unit();
    Adapter running = serve();
    struct {
        std::string credentials;
        mode_t mode;
        Arguments more;
        std::string complaint;
    } const cases[] = {
        {users, 0640, {}, "mode is 0640 and must be 0600"},
        {users + "carl:secret\n", 0600, {}, "line 5: user 'carl' has no hash of crypt(5)"},
        {"", 0600, {}, "it has no user"},
        {users, 0600, {"--listen", std::to_string(port())}, "port " + std::to_string(port()) + ": Address already in"},
        {users, 0600, {"--listen", "192.0.2.1:0"}, "192.0.2.1"},
        {users, 0600, {"--log-dir", "/dev/null"}, "log directory /dev/null: it is not a directory"},
        {users, 0600, {"--log-dir", "/tmp"}, "log directory /tmp: other users can write there"},
        {users, 0600, {"--credentials", "/nowhere/file"}, "/nowhere/file: No such file or directory"},
    };
    for (auto const& [text, mode, more, complaint] : cases) {
        writeCredentials(text, mode);
        Arguments arguments{"serve", "--unit",    endpoint,     "--log-level",   "none",     "--listen",
                            "0",     "--log-dir", logDirectory, "--credentials", credentials};
        for (std::size_t i = 0; i + 1 < more.size(); i += 2) {
            *(std::find(arguments.begin(), arguments.end(), more[i]) + 1) = more[i + 1];
        }
        ChildProcess child(program("trsadapter"), arguments);
        EXPECT_EQ(child.waitForExit(), 1) << complaint;
        child.readUntil(complaint, ChildProcess::Stream::error);
    }
}

} // namespace
