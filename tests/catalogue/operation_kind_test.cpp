// What each operation is taken for, against a record of all of them (tests/data/operation-kinds.tsv).
#include "catalogue/OperationKind.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>

namespace {

using trs::catalogue::Class;
using trs::catalogue::OperationKind;

using Lines = std::vector<std::string>;

Lines recorded()
{
    Lines lines;
    std::ifstream file(std::filesystem::path(__FILE__).parent_path() / "../data/operation-kinds.tsv");
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

Lines without(Lines lines, Lines const& others)
{
    std::set<std::string> const known(others.begin(), others.end());
    std::erase_if(lines, [&known](std::string const& line) { return known.contains(line); });
    return lines;
}

std::string rowOf(Class const& type, trs::catalogue::Operation const& operation)
{
    OperationKind const kind = kindOf(operation);
    auto const* const other = kind == OperationKind::write ? readerOf(type, operation) : writerOf(type, operation);
    std::string const name = briefNameOf(operation);
    return std::string(type.interface) + '\t' + std::string(operation.name) + '\t' +
           (kind == OperationKind::read    ? "read"
            : kind == OperationKind::write ? "write"
                                           : "execute") +
           (isPlainRead(operation) ? " plain" : "") + '\t' + (name.empty() ? "-" : name) + '\t' +
           (other != nullptr ? std::string(other->name) : "-");
}

TEST(OperationKinds, AreAsRecorded)
{
    Lines lines{"class\toperation\tkind\tname\tsets what it reads, or reads what it sets"};
    for (Class const* const each : trs::catalogue::classes()) {
        for (auto const& operation : each->own) {
            lines.push_back(rowOf(*each, operation));
        }
    }
    EXPECT_THAT(without(lines, recorded()), testing::IsEmpty()) << "not in the record";
    EXPECT_THAT(without(recorded(), lines), testing::IsEmpty()) << "only in the record";
}

// Whoever types a brief name gets the operation that it is made of, or one that the class prefers under that name.
TEST(OperationKinds, AreFoundByTheNamesThatPeopleUse)
{
    for (Class const* const each : trs::catalogue::classes()) {
        for (auto const& operation : each->own) {
            if (std::string const name = briefNameOf(operation); !name.empty()) {
                auto const* const found = find(*each, name, kindOf(operation));
                ASSERT_NE(found, nullptr) << each->name << ' ' << name;
                EXPECT_EQ(briefNameOf(*found), name);
                EXPECT_EQ(kindOf(*found), kindOf(operation));
            }
        }
    }
    struct {
        char const* type;
        char const* name;
        OperationKind kind;
        char const* found; // null: none
    } const cases[] = {
        {"IpNode", "mtu", OperationKind::read, "getMtu"},
        {"IpNode", "MTU", OperationKind::write, "setMtu"},
        {"IpNode", "setMtu", OperationKind::read, "setMtu"}, // by its own name it is meant, whatever it does
        {"IpNode", "mtu", OperationKind::execute, nullptr},
        {"PerformanceService", "existMonitoring", OperationKind::read, "existMonitoring"},
        {"PerformanceService", "existMonitoring", OperationKind::write, "setExistMonitoring"},
        {"IpNode", "lmpIfNet", OperationKind::read, "getLMPIfNet"},
        {"IpNode", "", OperationKind::read, nullptr},
        {"AtmPersistentObject", "locationId", OperationKind::read, "getLocationId"}, // and not hasLocationId
        {"VirtualConnectionTp", "trafficDescriptor", OperationKind::write, "setTrafficDescriptor"},
        {"DhcpAccess", "publicIpMask", OperationKind::read, "GetPublicIpMask"},
        {"HwmLed", "ledState", OperationKind::write, "updateLedState"},
        {"ApplicationObject", "supportedBy", OperationKind::read, nullptr},
    };
    for (auto const& [type, name, kind, expected] : cases) {
        auto const* const found = find(*trs::catalogue::findClass(type), name, kind);
        EXPECT_EQ(found != nullptr ? found->name : "", expected != nullptr ? expected : "") << name;
    }
}

} // namespace
