// The programs' end while something hangs: it does not wait for that.
#include "tests/tools/Service.h"

namespace {

using testing::HasSubstr;

class Ending : public ServiceTest {
protected:
    // Of a process that is told to end now. What hangs may do so for ten minutes here, or for the 5 s of a call.
    static void expectPrompt(ChildProcess& child)
    {
        auto const begin = std::chrono::steady_clock::now();
        child.signal(SIGTERM);
        EXPECT_EQ(child.waitForExit(), 0);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
    }
    // Whether it takes the signal that ends it itself. For a moment before its own code runs it may block all there
    // are.
    static bool watchesItsEnd(ChildProcess const& child)
    {
        std::ifstream status("/proc/" + std::to_string(child.id()) + "/status");
        std::string word;
        while (status >> word && word != "SigBlk:") {
        }
        status >> word;
        unsigned long const blocked = std::stoul(word, nullptr, 16);
        auto const isBlocked = [blocked](int signal) { return (blocked >> (signal - 1) & 1U) != 0; };
        return isBlocked(SIGTERM) && !isBlocked(SIGUSR1);
    }
    // Nobody accepts there, and nobody else finds a place in the queue.
    support::Descriptor fullSocket(std::string const& place)
    {
        support::Descriptor full(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un const address = support::addressOf(place);
        EXPECT_EQ(::bind(full.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(full.get(), 0), 0);
        queued_ = support::connectTo(place, false);
        return full;
    }

    Arguments const patient{"--unit", endpoint, "--timeout", "600000", "--log-level", "none"};

private:
    support::Descriptor queued_{-1};
};

TEST_F(Ending, OfTheAdapterCutsACallToAUnitThatHangs)
{
    Unit sim = unit({"--do", "hang"});
    ChildProcess starting(program("trsadapter"), patient);
    sim.readUntil("hanging in getPublicIpAddrRmi");
    expectPrompt(starting);

    ChildProcess calling(program("trsadapter"), patient);
    calling.readUntil("the agent is reached");
    EXPECT_THAT(sim.does("hang"), HasSubstr("will hang"));
    calling.writeLine("alarm 0,1");
    sim.readUntil("hanging in sendAlarmRmi");
    expectPrompt(calling);
    EXPECT_EQ(calling.readRest().back(), "alarm 0,1 failed: the peer was removed meanwhile");
    sim.signal(SIGKILL);
    sim.waitForExit();

    ::unlink(path.c_str());
    support::Descriptor const full = fullSocket(path);
    ChildProcess dialling(program("trsadapter"), patient);
    while (!watchesItsEnd(dialling)) {
        std::this_thread::yield();
    }
    expectPrompt(dialling);
}

TEST_F(Ending, OfTheServiceAnswersWhatHasBegunAndLosesNothing)
{
    Unit sim = unit();
    Adapter child = serve({"--timeout", "600000", "--request-timeout", "600000"});
    std::string const session = post(login("anna", "secret")).session;
    EXPECT_THAT(sim.does("hang"), HasSubstr("will hang"));
    child.writeLine("alarm 0,1");
    sim.readUntil("hanging in sendAlarmRmi");
    EXPECT_EQ(post(operation("supervision"), session).status, 200);

    support::Descriptor const begun = connect();
    send(begun, "POST / HTTP/1.1\r\n"); // and never goes on
    support::Descriptor const deaf = connect();
    std::string requests;
    for (int i = 0; i < 1000; ++i) {
        requests += "GET /metrics HTTP/1.1\r\nHost: x\r\n\r\n";
    }
    std::thread asking([&] {
        for (int i = 0; i < 20; ++i) {
            send(deaf, requests); // until the service takes no more, as it is not rid of its answers
        }
    });
    pollfd waiting{deaf.get(), POLLIN, 0};
    EXPECT_EQ(::poll(&waiting, 1, static_cast<int>(support::patience.count())), 1);
    expectPrompt(child);
    asking.join();
    EXPECT_EQ(receive(begun).status, 408);
    EXPECT_THAT(log(), testing::AllOf(HasSubstr("supervision"), HasSubstr("outcome=\"failed: the peer was removed")));
}

TEST_F(Ending, OfAUnitDoesNotWaitForAClientThatTakesNoAnswers)
{
    Unit sim = unit();
    support::Descriptor const deaf = support::connectTo(path);
    support::Octets const locating{0, 0, 0, 25, 3, 0, 0, 0, 0, 0, 0, 9, 0, 0,  0,
                                   0, 0, 0, 0,  0, 0, 0, 0, 1, 0, 0, 0, 1, 'S'};
    pollfd waiting{deaf.get(), POLLOUT, 0};
    while (::poll(&waiting, 1, 300) == 1) { // until the unit takes no more, as it is not rid of its answers
        ::send(deaf.get(), locating.data(), locating.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    }
    expectPrompt(sim);
}

TEST_F(Ending, OfARelayDoesNotWaitForAUnitThatDoesNotAccept)
{
    support::Descriptor const full = fullSocket(path);
    std::string const relayed = directory.file("relay");
    ChildProcess relay(program("trsctl"), {"--unit", endpoint, "trace", "--listen", "unix:" + relayed});
    relay.readUntil("relaying", ChildProcess::Stream::error);
    support::Descriptor const client = support::connectTo(relayed, false);
    expectPrompt(relay);
    EXPECT_TRUE(client.isClosedByPeer());
}

TEST_F(Ending, OfAVerbLeavesTheShell)
{
    Unit sim = unit({"--do", "hang"});
    ChildProcess shell(program("trsctl"), {"--unit", endpoint, "--timeout", "600000", "shell"});
    shell.write("call NmiRmiAdapterServer getPublicIpAddrRmi\nget IpNode mtu\n");
    sim.readUntil("hanging in getPublicIpAddrRmi");
    shell.signal(SIGINT);
    EXPECT_EQ(shell.readLine(), "mtu 1500");
    EXPECT_THAT(shell.readLine(ChildProcess::Stream::error).value_or(""), HasSubstr("the peer was removed meanwhile"));
    shell.closeInput();
    EXPECT_EQ(shell.waitForExit(), 0);
}

} // namespace
