// trsadapter serve under clients that do not behave, and under many that do.
#include "tests/support/Text.h"
#include "tests/tools/Service.h"

namespace {

using testing::HasSubstr;

class ServingBadly : public ServiceTest {
protected:
    long residentKilobytes(pid_t process)
    {
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        for (std::string word; status >> word;) {
            if (word == "VmRSS:") {
                status >> word;
                return std::stol(word);
            }
        }
        ADD_FAILURE() << "no memory";
        return 0;
    }
};

TEST_F(ServingBadly, RefusesSlowSenders)
{
    Unit sim = unit();
    Adapter child = serve({"--request-timeout", "300"});
    std::pair<std::string, char const*> const cases[] = {
        {"", "P"}, // as the first byte of many
        {"POST / HTTP/1.1\r\n", "x"},
        {"POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 1000000\r\n\r\n", "x"},
    };
    for (auto const& [begin, drop] : cases) {
        support::Descriptor const still = connect();
        support::Descriptor const dripping = connect();
        send(still, begin + drop);
        send(dripping, begin);
        pollfd waiting{dripping.get(), POLLIN, 0};
        do { // never so long without a byte that it would be noticed by that
            send(dripping, drop);
        } while (::poll(&waiting, 1, 10) == 0);
        EXPECT_EQ(receive(dripping).status, 408) << begin;
        EXPECT_EQ(receive(still).status, 408) << begin;
    }
    EXPECT_EQ(curl("health").status, 200);
}

TEST_F(ServingBadly, SurvivesWhatIsNoRequest)
{
    Unit sim = unit();
    Adapter child = serve();
    std::string flood = "GET /health HTTP/1.1\r\n";
    for (int i = 0; i < 10'000; ++i) {
        flood += "a" + std::to_string(i) + ": b\r\n";
    }
    std::pair<std::string, int> const cases[] = {
        {std::string("\0\xff\r\n\r\n", 6), 400},
        {"GET /" + std::string(9000, 'x') + " HTTP/1.1\r\n\r\n", 414},
        {flood, 431},
        {std::string(100'000, 'x'), 431},
        {"POST / HTTP/1.1\r\nContent-Length: 18446744073709551615\r\n\r\nabc", 413},
        {"POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\nabc", 413},
        {"POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nffffffffffffffff\r\nabc", 400},
        {"POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nabc", 400},
        {"POST / HTTP/1.1\r\nContent-Length: 10\r\n\r\nabc", 400},
        {"POST / HTTP/1.1\r\nContent-Encoding: gzip\r\nContent-Length: 3\r\n\r\nabc", 400},
    };
    for (auto const& [request, status] : cases) {
        support::Descriptor const socket = connect();
        send(socket, request);
        ::shutdown(socket.get(), SHUT_WR);
        EXPECT_EQ(receive(socket).status, status) << request.substr(0, 80);
    }

    std::string const bomb = directory.file("bomb");
    ASSERT_EQ(std::system(("head -c 100000000 /dev/zero | gzip >" + bomb).c_str()), 0);
    EXPECT_EQ(curl("", {"--header", "Content-Encoding: gzip", "--data-binary", "@" + bomb}).status, 413);
    EXPECT_LT(residentKilobytes(child.id()), 400'000);
}

TEST_F(ServingBadly, AnswersAsAWholeWhateverRangesAreAsked)
{
    Unit sim = unit();
    Adapter child = serve();
    Reply const whole = curl("nowhere");
    for (std::string const& ranges :
         {std::string("0-1"), "0-" + support::repeated(",0-", 2600), std::string("9-1,x")}) {
        for (char const* const name : {"Range", "rAnGe"}) {
            std::string const header = std::string(name) + ": bytes=" + ranges;
            Reply const reply = curl("nowhere", {"--header", header});
            EXPECT_EQ(reply.status, 404);
            EXPECT_EQ(reply.body, whole.body);
            EXPECT_THAT(reply.head, testing::Not(HasSubstr("Content-Range")));
            Reply const posted = post(operation("supervision"), "", {"--header", header});
            EXPECT_EQ(posted.status, 401);
            EXPECT_THAT(posted.body, HasSubstr("</BTSMessage>"));
        }
    }
    EXPECT_THAT(curl("health", {"--head"}).head, HasSubstr("Accept-Ranges: none"));
}

TEST_F(ServingBadly, ServesOthersWhileConnectionsIdle)
{
    Unit sim = unit();
    Adapter child = serve();
    std::vector<support::Descriptor> idle;
    for (int i = 0; i < 200; ++i) {
        idle.push_back(connect());
    }
    EXPECT_EQ(post(login("anna", "secret")).status, 200);

    support::Descriptor const begun = connect(); // and ends when it is told to
    send(begun, "POST / HTTP/1.1\r\nContent-Length: 10\r\nExpect: 100-continue\r\n\r\n");
    std::string const goOn = "HTTP/1.1 100 Continue\r\n\r\n";
    EXPECT_EQ(begun.read(goOn.size()), support::Octets(goOn.begin(), goOn.end()));
    child.signal(SIGTERM);
    EXPECT_EQ(child.waitForExit(), 0);
    EXPECT_EQ(receive(begun).status, 408);
}

// The load of ten seconds, from a generator that is not ours. Each message has a connection of its own. A sanitizer's
// build is slower by far, and shows what it can at a fifth of the rate: beyond what a server can take, connections that
// are slow to send are closed for those that wait.
TEST_F(ServingBadly, TakesAThousandMessagesASecond)
{
#ifdef TRSMAN_SANITIZED
    constexpr int every20Milliseconds = 4;
#else
    constexpr int every20Milliseconds = 20;
#endif
    Unit sim = unit();
    Adapter child = serve();
    std::string const session = post(login("anna", "secret")).session;
    std::string const body = directory.file("message");
    std::ofstream(body) << operation("supervision");
    auto const load = [&](int seconds) {
        std::string const count = std::to_string(seconds * 50 * every20Milliseconds);
        std::string const said = run("h2load", {"--h1", "--requests=" + count, "--clients=" + count,
                                                "--rate=" + std::to_string(every20Milliseconds), "--rate-period=20ms",
                                                "--data=" + body, "--header=Cookie: ZYN_SESSION_ID=" + session, url});
        EXPECT_THAT(said, testing::AllOf(HasSubstr(' ' + count + " succeeded, 0 failed, 0 errored, 0 timeout"),
                                         HasSubstr(count + " 2xx, 0 3xx, 0 4xx, 0 5xx")));
    };
    load(1); // every thread has its buffers after that
    long const before = residentKilobytes(child.id());
    load(10);
#ifndef TRSMAN_SANITIZED // which keeps what was freed
    EXPECT_LT(residentKilobytes(child.id()) - before, 1024) << "a hundred bytes for each message";
#else
    static_cast<void>(before);
#endif
}

} // namespace
