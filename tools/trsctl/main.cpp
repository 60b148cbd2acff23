// trsctl: hands and eyes for a unit's objects.
#include "tools/trsctl/Program.h"

// CLI11 throws when the options of a program contradict each other, which would be a fault of Program.cpp.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape)
{
    return Program({}).run({argv + 1, argv + argc});
}
