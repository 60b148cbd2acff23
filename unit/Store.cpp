#include "unit/Store.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "catalogue/ObjectName.h"
#include "platform/NmaLogHelper.h"
#include "rmi/TreflectHandlerState.h"
#include "unit/Object.h"
#include "unit/Scenario.h"
#include "unit/Unit.h"

#include <sqlite3.h>

#include <vector>

namespace trs::sim {

namespace {

constexpr int ownFiles = 0x74727375; // application_id, "trsu"
constexpr int version = 1;           // user_version

// A row to write: an object's class and facts, or the whole unit's; nothing to remove it.
struct Row {
    std::string id;
    std::string className;
    std::string facts;
};

std::string textAt(sqlite3_stmt* statement, int column)
{
    auto const* const bytes = reinterpret_cast<char const*>(sqlite3_column_text(statement, column));
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

} // namespace

void Store::Close::operator()(sqlite3* database) const { sqlite3_close(database); }
void Store::Close::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Store::Store(Unit& unit) : unit_(unit) {}

Store::~Store()
{
    TreflectHandlerState const running;
    unit_.inventory().setKeeper(nullptr);
}

bool Store::execute(char const* sql)
{
    return sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

Store::Statement Store::statement(char const* sql)
{
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(database_.get(), sql, -1, &prepared, nullptr);
    return Statement(prepared);
}

bool Store::run(Statement& statement, std::initializer_list<std::string_view> values)
{
    int place = 0;
    for (std::string_view const value : values) {
        sqlite3_bind_text(statement.get(), ++place, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    bool const isDone = sqlite3_step(statement.get()) == SQLITE_DONE;
    sqlite3_reset(statement.get());
    return isDone;
}

std::string Store::complaint(std::string const& file) const
{
    return '\'' + printable(file) + "' cannot hold a unit's state: " + sqlite3_errmsg(database_.get());
}

std::string Store::open(std::string const& file, bool& isNew)
{
    std::string wrong = prepare(file, isNew);
    wrong = wrong.empty() && !isNew ? load() : wrong;
    if (!wrong.empty()) {
        return wrong;
    }
    unit_.inventory().setKeeper(this);
    for (Object const* const object : unit_.inventory().all()) {
        changed(*object);
    }
    return write() ? "" : complaint(file);
}

std::string Store::prepare(std::string const& file, bool& isNew)
{
    sqlite3* database = nullptr;
    int const opened = sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    database_.reset(database);
    if (opened != SQLITE_OK) {
        return complaint(file);
    }
    auto const number = [this](char const* sql) {
        Statement const asked = statement(sql);
        return asked && sqlite3_step(asked.get()) == SQLITE_ROW ? sqlite3_column_int(asked.get(), 0) : -1;
    };
    // Kept locked by this process from the first write on.
    if (!execute("PRAGMA locking_mode = EXCLUSIVE") || !execute("PRAGMA journal_mode = WAL") ||
        !execute("BEGIN IMMEDIATE")) {
        return complaint(file);
    }
    int const owner = number("PRAGMA application_id");
    isNew = owner == 0 && number("SELECT count(*) FROM sqlite_schema") == 0;
    if (!isNew && owner != ownFiles) {
        return '\'' + printable(file) + "' is a database, but not of a simulated unit";
    }
    if (!isNew && number("PRAGMA user_version") != version) {
        return '\'' + printable(file) + "' is of version " + std::to_string(number("PRAGMA user_version")) +
               " of a unit's state, and not " + std::to_string(version);
    }
    bool const isMade =
        !isNew ||
        (execute(("PRAGMA application_id = " + std::to_string(ownFiles)).c_str()) &&
         execute(("PRAGMA user_version = " + std::to_string(version)).c_str()) &&
         execute("CREATE TABLE unit (whole INTEGER PRIMARY KEY CHECK (whole = 1), facts TEXT NOT NULL)") &&
         execute("CREATE TABLE objects (id TEXT PRIMARY KEY, class TEXT NOT NULL, facts TEXT NOT NULL) WITHOUT ROWID"));
    // What was committed survives the end of the process; syncing each time would only help against loss of power.
    if (!isMade || !execute("COMMIT") || !execute("PRAGMA synchronous = NORMAL")) {
        return complaint(file);
    }
    putWhole_ = statement("INSERT OR REPLACE INTO unit VALUES (1, ?)");
    putObject_ = statement("INSERT OR REPLACE INTO objects VALUES (?, ?, ?)");
    removeObject_ = statement("DELETE FROM objects WHERE id = ?");
    file_ = file;
    return putWhole_ && putObject_ && removeObject_ ? "" : complaint(file);
}

std::string Store::load()
{
    catalogue::Value document;
    auto const parse = [this](std::string const& text, catalogue::Value& value) {
        std::string const wrong = catalogue::parseJson(text, value);
        return wrong.empty() ? wrong : '\'' + printable(file_) + "' has a row that is " + wrong;
    };
    Statement const whole = statement("SELECT facts FROM unit");
    if (!whole || sqlite3_step(whole.get()) != SQLITE_ROW) {
        return complaint(file_);
    }
    std::string wrong = parse(textAt(whole.get(), 0), document);
    catalogue::Value objects = catalogue::Value::object();
    Statement const rows = statement("SELECT class, id, facts FROM objects");
    int step = SQLITE_ROW;
    while (wrong.empty() && rows && (step = sqlite3_step(rows.get())) == SQLITE_ROW) {
        std::string const name = catalogue::ObjectName{textAt(rows.get(), 0), textAt(rows.get(), 1)}.text();
        wrong = parse(textAt(rows.get(), 2), objects[name]);
    }
    if (!wrong.empty() || step != SQLITE_DONE) {
        return wrong.empty() ? complaint(file_) : wrong;
    }
    document["objects"] = std::move(objects);
    wrong = scenario::apply(unit_, document);
    return wrong.empty() ? wrong : '\'' + printable(file_) + "': " + wrong;
}

void Store::changed(Object const& object)
{
    if (!object.isDerived()) {
        changed_.insert(object.id());
        gone_.erase(object.id());
        ++noted_;
    }
}

void Store::gone(std::string const& id)
{
    changed_.erase(id);
    gone_.insert(id);
    ++noted_;
}

bool Store::keep()
{
    unsigned long const wanted = noted_;
    if (kept_ >= wanted) {
        return true;
    }
    std::lock_guard const lock(writing_);
    if (kept_ >= wanted) {
        return true;
    }
    return write();
}

bool Store::write()
{
    std::vector<Row> rows;
    std::set<std::string> gone;
    std::string whole;
    unsigned long noted = 0;
    {
        TreflectHandlerState const running;
        noted = noted_; // before anything is looked at: what changes meanwhile is written the next time
        for (std::string const& id : changed_) {
            if (Object* const object = unit_.inventory().find(id)) {
                rows.push_back({id, std::string(object->type().name), catalogue::toJson(object->facts().say(), -1)});
            }
        }
        changed_.clear();
        gone.swap(gone_);
        whole = catalogue::toJson(scenario::saveWhole(unit_), -1);
    }
    bool isWritten = execute("BEGIN") && (whole == whole_ || run(putWhole_, {whole}));
    for (Row const& row : rows) {
        isWritten = isWritten && run(putObject_, {row.id, row.className, row.facts});
    }
    for (std::string const& id : gone) {
        isWritten = isWritten && run(removeObject_, {id});
    }
    isWritten = isWritten && execute("COMMIT");
    if (isWritten) {
        whole_ = std::move(whole);
        kept_ = noted;
        return true;
    }
    if (!isBroken_) { // the unit goes on, but answers nothing that is not kept
        isBroken_ = true;
        NmaLogHelper(3, __FILE__, __func__, __LINE__).message("%s", complaint(file_).c_str());
    }
    execute("ROLLBACK");
    {
        TreflectHandlerState const running;
        for (Row const& row : rows) {
            changed_.insert(row.id);
        }
        gone_.merge(gone);
    }
    return false;
}

} // namespace trs::sim
