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
    pid_t id() const { return id_; }
    // The line that it wrote.
    std::string const& line() const { return line_; }
    ServerProcess(ServerProcess const&) = delete;
    ServerProcess& operator=(ServerProcess const&) = delete;
    ~ServerProcess();

    // Keeps it from using a processor while another server is being measured.
    void pause() const;
    void resume() const;

private:
    pid_t id_;
    std::string line_;
    int output_; // kept open, or the server could not write to its standard output any more
};

// What a process takes, as the system sees it.
struct Usage {
    long threads;
    long kibibytes; // resident memory
};
Usage usageOf(pid_t process);

// Raises the number of files that this process may have open, as far as it may. What it is then.
long allowManyDescriptors();

// Runs this program with other arguments and waits for its end. Its exit status, or -1.
int runAgain(std::vector<std::string> const& arguments);

// Confines this process, and those that it starts from now on, to one processor.
void useOneProcessor();
int processors();

} // namespace bench
