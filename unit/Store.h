// The file that holds what a simulated unit holds, over restarts.
#pragma once

#include "unit/Inventory.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace trs::sim {

class Unit;

// An SQLite database in WAL mode, of one process at a time: a row for each object with its facts as JSON, and one for
// the unit as a whole. It has every change that was kept, also after the process is killed; after the machine loses its
// power it may lack the last ones, but nothing else.
class Store final : public Inventory::Keeper {
public:
    // `unit` outlives it.
    explicit Store(Unit& unit);
    Store(Store const&) = delete;
    Store& operator=(Store const&) = delete;
    ~Store() override;

    // Has the unit hold what the file says, or the file what the unit holds when it is new, which `isNew` tells. Empty,
    // or why it cannot. The calling thread is under the run permission.
    std::string open(std::string const& file, bool& isNew);
    // Writes what has changed, and returns when the file has it: false, once logged, when it cannot be written. On any
    // thread, without the run permission.
    bool keep();
    // Something of the unit as a whole has changed. On any thread.
    void noteChange() { ++noted_; }

    void changed(Object const& object) override;
    void gone(std::string const& id) override;

private:
    struct Close {
        void operator()(sqlite3* database) const;
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Close>;

    std::string prepare(std::string const& file, bool& isNew);
    std::string load();
    bool execute(char const* sql);
    Statement statement(char const* sql);
    bool run(Statement& statement, std::initializer_list<std::string_view> values);
    std::string complaint(std::string const& file) const;
    bool write();

    Unit& unit_;
    std::string file_;
    std::mutex writing_; // taken before the run permission; guards the database
    std::unique_ptr<sqlite3, Close> database_;
    Statement putWhole_;
    Statement putObject_;
    Statement removeObject_;
    std::string whole_;                    // the unit's row as it was committed last; guarded by writing_
    std::set<std::string> changed_;        // identifiers; under the run permission
    std::set<std::string> gone_;           // likewise
    std::atomic<unsigned long> noted_ = 0; // changes
    std::atomic<unsigned long> kept_ = 0;  // of them
    bool isBroken_ = false;
};

} // namespace trs::sim
