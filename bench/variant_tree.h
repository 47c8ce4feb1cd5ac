#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

/// The usual way to hold a script's values without this library: a variant whose containers hold shared nodes.
struct VariantNode
{
    using Items = std::vector<std::shared_ptr<const VariantNode>>;

    std::variant<std::monostate, bool, std::int32_t, double, std::string, Items> value;
};

inline bool operator==(const VariantNode& left, const VariantNode& right)
{
    if (left.value.index() != right.value.index()) {
        return false;
    }
    const auto* const items = std::get_if<VariantNode::Items>(&left.value);
    if (items == nullptr) {
        return left.value == right.value;
    }
    const auto& others = std::get<VariantNode::Items>(right.value);
    if (items->size() != others.size()) {
        return false;
    }
    for (std::size_t i = 0; i < items->size(); ++i) {
        if (!(*(*items)[i] == *others[i])) {
            return false;
        }
    }
    return true;
}

template <class T> std::shared_ptr<const VariantNode> VariantOf(T value)
{
    return std::make_shared<const VariantNode>(VariantNode{std::move(value)});
}

/// Ten mixed values; the same as the kernel's in tuple.cpp.
inline VariantNode TenVariants(int seed)
{
    const std::int32_t number = seed;
    return VariantNode{VariantNode::Items{VariantOf(number), VariantOf(0.5 + seed), VariantOf(std::string("short")),
                                          VariantOf(std::string("a text that is too long to be kept in place")),
                                          VariantOf(std::monostate()), VariantOf(true), VariantOf(number + 1000),
                                          VariantOf(VariantNode::Items{VariantOf(number), VariantOf(number + 1)}),
                                          VariantOf(VariantNode::Items{VariantOf(0.1), VariantOf(0.2), VariantOf(0.3)}),
                                          VariantOf(1e-3 * seed)}};
}
