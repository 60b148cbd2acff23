#include "catalogue/References.h"

namespace trs::catalogue {

namespace {

void collectReferences(Type const& type, Value const& value, std::vector<std::string>& objects)
{
    if (type.kind == Type::Kind::object && value.is_string()) {
        objects.push_back(value.get<std::string>());
    } else if (type.kind == Type::Kind::sequence || type.kind == Type::Kind::array) {
        for (Value const& element : value) {
            collectReferences(*type.element, element, objects);
        }
    } else if (type.kind == Type::Kind::record) {
        for (Field const& field : type.fields) {
            collectReferences(*field.type, value[std::string(field.name)], objects);
        }
    }
}

} // namespace

std::vector<std::string> referencesIn(Operation const& operation, Value const& results)
{
    std::vector<std::string> objects;
    if (operation.result != nullptr && results.contains("result")) {
        collectReferences(*operation.result, results["result"], objects);
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (!operation.parameters[i].isIn) {
            collectReferences(*operation.parameters[i].type, results[std::string(names[i])], objects);
        }
    }
    return objects;
}

} // namespace trs::catalogue
