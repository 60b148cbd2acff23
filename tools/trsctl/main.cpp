// trsctl: hands and eyes for a unit's objects.
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Program.h"

int main(int argc, char** argv)
{
    return trs::tools::runProgram([&] { return trs::ctl::Program({}).run({argv + 1, argv + argc}); });
}
