// Standard input, output and error, as all programs have them.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace trs::tools {

// What main() consists of. The three streams are there before `body` begins, so that nothing that it opens gets their
// numbers: one that the program was started without cannot be read, cannot be written, or in the case of standard error
// takes whatever is written. What takes no more is an error and not a signal. The exit code is the body's, but
// outputLost when that is 0 and isOutputLost().
int runProgram(std::function<int()> const& body);

constexpr int outputLost = 1;

// The only ways to standard output, from any thread and at once: a line, and text as it is. When it takes no more, that
// is complained about once, and what comes later is dropped.
void say(std::string const& line);
void print(std::string_view text);

// A complaint for standard error: its lines stay lines, and are escaped but for backslashes, as what is quoted in it
// from elsewhere may be escaped already.
std::string complaintText(std::string_view text);

// Whether standard output takes no more, for which reason ever. A reader who has gone does not want more, and nobody
// complains of that; all else is a loss.
bool isOutputGone();
bool isOutputLost();
// Has `listener`, which does not write, called once when output is gone; at once when it is. Null: nobody is called.
void onOutputGone(std::function<void()> listener);

} // namespace trs::tools
