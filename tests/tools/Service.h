// The serving adapter as tests see it: a child process, clients that are not ours, and bare sockets.
#pragma once

#include "adapter/ZYN_XmlParser.h"
#include "tests/support/Programs.h"

#include <arpa/inet.h>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <sstream>

class ServiceTest : public ProgramTest {
protected:
    ~ServiceTest() override { std::filesystem::remove_all(logDirectory); }

    // A program of the system, with its standard output.
    static std::string run(std::string const& name, Arguments const& arguments)
    {
        ChildProcess child("/usr/bin/" + name, arguments);
        child.closeInput();
        EXPECT_EQ(child.waitForExit(), 0) << name;
        std::string output;
        for (std::string const& line : child.readRest()) {
            output += line + '\n';
        }
        return output;
    }

    void writeCredentials(std::string const& text, mode_t mode = 0600) const
    {
        std::ofstream(credentials) << text;
        ASSERT_EQ(::chmod(credentials.c_str(), mode), 0);
    }
    // What serves, from when it is ready on.
    struct Adapter : ChildProcess {
        Adapter(Arguments const& arguments, std::string& readyUrl) : ChildProcess(program("trsadapter"), arguments)
        {
            std::string const ready = readUntil("ready on ");
            readyUrl = ready.substr(ready.find("http"));
        }
    };
    // At a port of its own.
    Adapter serve(Arguments const& more = {})
    {
        writeCredentials(users);
        Arguments arguments{"--unit", endpoint,    "--log-level", "none",          "serve",    "--listen",
                            "0",      "--log-dir", logDirectory,  "--credentials", credentials};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return {arguments, url};
    }
    int port() const { return std::stoi(url.substr(url.rfind(':') + 1)); }

    struct Reply {
        int status = 0;
        std::string head;
        std::string body;
        std::string session; // of the cookie

        std::string value(std::string const& element) const
        {
            std::istringstream stream(body);
            return ZYN_XmlParser(stream).getValue("/BTSMessage" + element);
        }
    };
    static Reply parse(std::string const& text)
    {
        Reply reply;
        std::size_t const end = text.find("\n\n"); // lines have lost their carriage returns
        reply.head = text.substr(0, end);
        reply.body = end == std::string::npos ? "" : text.substr(end + 2);
        reply.status = text.starts_with("HTTP/1.1 ") ? std::atoi(text.c_str() + 9) : 0;
        std::string const cookie = "ZYN_SESSION_ID=";
        if (std::size_t const at = reply.head.find(cookie); at != std::string::npos) {
            reply.session = reply.head.substr(at + cookie.size(), 32);
        }
        return reply;
    }
    // What curl gets.
    Reply curl(std::string const& page, Arguments arguments = {}) const
    {
        arguments.insert(arguments.begin(), {"--silent", "--show-error", "--include", "--header", "Expect:"});
        arguments.push_back(url + page);
        std::string text = run("curl", arguments);
        std::erase(text, '\r');
        return parse(text);
    }
    Reply post(std::string const& document, std::string const& session = {}, Arguments arguments = {}) const
    {
        arguments.insert(arguments.end(),
                         {"--cookie", "other=1; ZYN_SESSION_ID=" + session, "--data-binary", document});
        return curl("", arguments);
    }
    static std::string message(std::string const& content)
    {
        return "<?xml version=\"1.0\"?><BTSMessage><BTSMessageHdr><_seqNumber>12</_seqNumber><_from>DOV</_from>"
               "</BTSMessageHdr>" +
               content + "</BTSMessage>";
    }
    static std::string login(std::string const& user, std::string const& password)
    {
        return message("<LoginRequest><_userName>" + user + "</_userName><_password>" + password +
                       "</_password></LoginRequest>");
    }
    static std::string operation(std::string const& name)
    {
        return message("<XOHOperation>" + name + "</XOHOperation>");
    }

    support::Descriptor connect() const
    {
        support::Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port()));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        return socket;
    }
    static void send(support::Descriptor const& socket, std::string const& text)
    {
        socket.write({text.begin(), text.end()});
    }
    // All that comes until the server closes.
    static Reply receive(support::Descriptor const& socket)
    {
        support::Octets const octets = socket.read(std::size_t{1} << 20);
        std::string text(octets.begin(), octets.end());
        std::erase(text, '\r');
        return parse(text);
    }

    // The log of one file, as any gzip reader has it; it must be an XML document.
    std::string log(std::string const& name = "ruem_wbts_4711.xml.gz") const
    {
        std::string const text = run("zcat", {logDirectory + "/" + name});
        std::istringstream stream(text);
        EXPECT_EQ(ZYN_XmlParser(stream).XML_GetErrorCode(), XML_ERROR_NONE);
        return text;
    }

    // Users anna and bert, whose passwords are "secret" and "öß&<".
    std::string const users =
        "# users\n\n"
        "anna:$6$rounds=1000$trsman$"
        "IhiOo4tz.vzXeIfn9kV1km4IOArcVgLnQbWEq/wN8bUrWuOoZ6G9lBIQungVlHvrCneJmiA3qR2KGwTfSkXwD0\n"
        "bert:$6$rounds=1000$trsman$"
        "1q4om4sf31aRVJ.vCy8jHO8dQz.LUzbBllg0uk7W2rMt5.BI.JKi8qXrs3OJNS6V33FuaMLZLDt1dUIv6XbpW.\n";
    std::string const credentials = directory.file("credentials");
    std::string const logDirectory = directory.file("log");
    std::string url;
};
