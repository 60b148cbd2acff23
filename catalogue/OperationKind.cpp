#include "catalogue/OperationKind.h"

#include "catalogue/Text.h"
#include "rmi/NameOf.h"
#include "rmi/ResponseInfo.h"

#include <algorithm>
#include <cctype>

namespace trs::catalogue {

namespace {

// What names begin with.
struct Word {
    std::string_view text;
    OperationKind kind;
    bool leadsToSubject = true;
};

// Of those that lead to a subject, the first ones are meant first.
constexpr Word nameWords[] = {
    {"get", OperationKind::read},
    {"is", OperationKind::read},
    {"has", OperationKind::read},
    {"Get", OperationKind::read},
    {"internalGet", OperationKind::read},
    {"set", OperationKind::write},
    {"update", OperationKind::write},
    {"internalSet", OperationKind::write},
    {"conditionActive", OperationKind::read, false},
    {"contains", OperationKind::read, false},
    {"disables", OperationKind::read, false},
    {"equals", OperationKind::read, false},
    {"exist", OperationKind::read, false},
    {"retrieve", OperationKind::read, false},
    {"toKey", OperationKind::read, false},
    {"toString", OperationKind::read, false},
};

bool hasStatusOfSetting(Operation const& operation)
{
    return operation.result != nullptr && operation.result->kind == Type::Kind::status &&
           operation.result->name == reflect::className<SetClient>;
}

// Null when an operation neither reads nor writes.
Word const* wordOf(Operation const& operation)
{
    auto const* const found =
        std::ranges::find_if(nameWords, [&](Word const& word) { return operation.name.starts_with(word.text); });
    return found == std::end(nameWords) || (found->kind == OperationKind::read && hasStatusOfSetting(operation))
               ? nullptr
               : found;
}

bool isUpper(char letter) { return std::isupper(static_cast<unsigned char>(letter)) != 0; }

// Whether the operation reads what the other one, which begins with that word, sets.
bool isReaderOf(Operation const& reader, Operation const& writer)
{
    Word const* const reading = wordOf(reader);
    if (reading == nullptr || reading->kind != OperationKind::read || !reading->leadsToSubject ||
        !isSameWord(subjectOf(reader), subjectOf(writer))) {
        return false;
    }
    std::vector<Type const*> types = typesOf(reader, true);
    std::ranges::copy(typesOf(reader, false), std::back_inserter(types));
    return types == typesOf(writer, true);
}

} // namespace

OperationKind kindOf(Operation const& operation)
{
    Word const* const word = wordOf(operation);
    return word != nullptr ? word->kind : OperationKind::execute;
}

bool isPlainRead(Operation const& operation)
{
    return kindOf(operation) == OperationKind::read && typesOf(operation, true).empty() &&
           !typesOf(operation, false).empty();
}

std::string_view subjectOf(Operation const& operation)
{
    Word const* const word = wordOf(operation);
    return word != nullptr && word->leadsToSubject ? operation.name.substr(word->text.size()) : std::string_view();
}

std::string briefNameOf(Operation const& operation)
{
    // A capital goes on with small letters, or is one of several, the last of which begins the next word.
    std::string name(subjectOf(operation));
    for (std::size_t i = 0; i < name.size() && isUpper(name[i]); ++i) {
        bool const beginsNext =
            i > 0 && i + 1 < name.size() && std::islower(static_cast<unsigned char>(name[i + 1])) != 0;
        if (beginsNext) {
            break;
        }
        name[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
    }
    return name;
}

Operation const* find(Class const& type, std::string_view name, OperationKind kind)
{
    Operation const* const exact = type.find(name);
    if (name.empty() || (exact != nullptr && kindOf(*exact) == kind)) {
        return exact;
    }
    std::vector<Operation const*> const all = type.operations();
    for (Word const& word : nameWords) {
        auto const found = std::find_if(all.rbegin(), all.rend(), [&](Operation const* candidate) {
            return word.kind == kind && wordOf(*candidate) == &word && isSameWord(subjectOf(*candidate), name);
        });
        if (found != all.rend()) {
            return *found;
        }
    }
    // Its name in another case, where only one is called so.
    auto const isCalled = [&](Operation const* candidate) { return isSameWord(candidate->name, name); };
    auto const other = std::ranges::find_if(all, isCalled);
    return exact != nullptr || std::ranges::count_if(all, isCalled) != 1 ? exact : *other;
}

std::vector<Type const*> typesOf(Operation const& operation, bool isIn)
{
    std::vector<Type const*> types;
    if (!isIn && operation.result != nullptr && operation.result->kind != Type::Kind::status) {
        types.push_back(operation.result);
    }
    for (Parameter const& parameter : operation.parameters) {
        if (parameter.isIn == isIn) {
            types.push_back(parameter.type);
        }
    }
    return types;
}

Operation const* readerOf(Class const& type, Operation const& writer)
{
    if (kindOf(writer) != OperationKind::write) {
        return nullptr;
    }
    std::vector<Operation const*> const all = type.operations();
    auto const found =
        std::ranges::find_if(all, [&writer](Operation const* candidate) { return isReaderOf(*candidate, writer); });
    return found != all.end() ? *found : nullptr;
}

Operation const* writerOf(Class const& type, Operation const& reader)
{
    std::vector<Operation const*> const all = type.operations();
    auto const found =
        std::ranges::find_if(all, [&](Operation const* candidate) { return readerOf(type, *candidate) == &reader; });
    return found != all.end() ? *found : nullptr;
}

} // namespace trs::catalogue
