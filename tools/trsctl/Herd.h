// What happens to many objects.
#pragma once

#include "tools/trsctl/Listener.h"

#include <list>
#include <map>
#include <string>
#include <vector>

namespace trs::ctl {

// Has the feed told of the operations. What is wrong is said.
ExitCode listen(Target const& target, std::vector<catalogue::Operation const*> const& operations, Feed& feed,
                std::list<Listener>& listeners);

// All operations of a class that do not read.
std::vector<catalogue::Operation const*> changesOf(catalogue::Class const& type);

// The objects of a unit that a pattern matches, as they come and go.
class Herd {
public:
    // The pattern is of names or identifiers, with * and ?; "IfNet/**" is all that is below, and no more. `names`: the
    // operations whose executions are told to the feed; of none, all that do not read.
    Herd(Program::Options const& options, std::string pattern, std::vector<std::string> names, Feed& feed)
        : options_(options), pattern_(std::move(pattern)), names_(std::move(names)), feed_(feed)
    {
    }

    // Listens to objects that are new, and no longer to those that are gone, and has the feed told of both, but for the
    // first time. What is wrong is said.
    ExitCode look(bool isFirst);
    std::size_t size() const { return members_.size(); }
    // What is watched of all of them, each once.
    std::vector<catalogue::Operation const*> const& operations() const { return operations_; }

private:
    bool isMeant(std::string const& object) const;
    ExitCode add(std::string const& object);
    void tell(std::string const& object, char const* what);

    Program::Options const& options_;
    std::string const pattern_;
    std::vector<std::string> const names_;
    Feed& feed_;
    std::map<std::string, std::list<Listener>> members_;
    std::vector<catalogue::Operation const*> operations_;
};

} // namespace trs::ctl
