// A body is JSON when the slow grammar says so, and says the same.

#include "fuzz/Fuzzing.h"
#include "fuzz/SlowJson.h"
#include "platform/WholeJson.h"

#include <string_view>

namespace {

namespace dom = simdjson::dom;

SlowJson treeOf(dom::element value)
{
    SlowJson tree;
    dom::array members;
    dom::object record;
    std::string_view text;
    switch (value.type()) {
    case dom::element_type::NULL_VALUE:
        break;
    case dom::element_type::BOOL:
        tree.kind = SlowJson::Kind::boolean;
        break;
    case dom::element_type::INT64:
    case dom::element_type::UINT64:
    case dom::element_type::DOUBLE:
        tree.kind = SlowJson::Kind::number;
        break;
    case dom::element_type::STRING:
        tree.kind = SlowJson::Kind::text;
        if (value.get(text) == simdjson::SUCCESS)
            tree.text = textOf(text);
        break;
    case dom::element_type::ARRAY:
        tree.kind = SlowJson::Kind::list;
        if (value.get(members) != simdjson::SUCCESS)
            break;
        for (const dom::element member : members)
            tree.values.push_back(treeOf(member));
        break;
    case dom::element_type::OBJECT:
        tree.kind = SlowJson::Kind::record;
        if (value.get(record) != simdjson::SUCCESS)
            break;
        for (const auto &[key, member] : record) {
            tree.keys.push_back(textOf(key));
            tree.values.push_back(treeOf(member));
        }
        break;
    }
    return tree;
}

} // namespace

void fuzz(std::string_view input)
{
    dom::parser parser;
    dom::element root;
    const bool isJson = parseWhole(parser, bytesFrom(input), root) == simdjson::SUCCESS;
    const auto expected = slowJson(input);
    require(isJson == expected.has_value(), "the same bodies are JSON");
    if (isJson)
        require(treeOf(root) == *expected, "the same values are read");
}
