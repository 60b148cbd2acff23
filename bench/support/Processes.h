// The server processes that the benchmarks call.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace bench {

// This program once more, with other arguments. It is ready when it has written a line to its standard output, and
// is ended with this object.
class ServerProcess {
public:
    explicit ServerProcess(std::vector<std::string> const& arguments);
    ServerProcess(ServerProcess const&) = delete;
    ServerProcess& operator=(ServerProcess const&) = delete;
    ~ServerProcess();

    // Keeps it from using a processor while another server is being measured.
    void pause() const;
    void resume() const;

private:
    pid_t id_;
    int output_; // kept open, or the server could not write to its standard output any more
};

// Runs this program with other arguments and waits for its end. Its exit status, or -1.
int runAgain(std::vector<std::string> const& arguments);

// Confines this process, and those that it starts from now on, to one processor.
void useOneProcessor();
int processors();

} // namespace bench
