// trsctl: hands and eyes for a unit's objects.
#include "tools/trsctl/Program.h"

int main(int argc, char** argv) { return trs::ctl::Program({}).run({argv + 1, argv + argc}); }
