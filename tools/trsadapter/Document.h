// Writes the documents that ZYN_XmlParser reads.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace trs::adapter {

// What stands at the path of an element, in the form that ZYN_XmlParser has for paths.
using Field = std::pair<std::string, std::string>;

// A document with these fields in this order, under one root. Elements that neighbouring paths have in common are
// written once; a field whose element is still open is written into it, behind what it contains.
std::string writeDocument(std::vector<Field> const& fields);

} // namespace trs::adapter
