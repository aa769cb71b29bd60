// Parsed JSON values for effect tests, obtained through the library's own
// loader so tests need no JSON parser of their own.
#ifndef VOK_TESTS_JSON_DOC_H
#define VOK_TESTS_JSON_DOC_H

#include <cstring>
#include <string>

#include <yajl/yajl_tree.h>

#include "vok/effects.h"

namespace vok_test {

// Member `key` of an object node, or null.
inline yajl_val member(yajl_val node, const char *key) {
    if (!node || node->type != yajl_t_object) return nullptr;
    for (size_t i = 0; i < node->u.object.len; ++i)
        if (strcmp(node->u.object.keys[i], key) == 0) return node->u.object.values[i];
    return nullptr;
}

// A loaded effect that unloads itself.
class Effect {
public:
    explicit Effect(const std::string &json) : root_(TESKLoadEffect(json.c_str())) {}
    ~Effect() { TESKUnloadEffect(&root_); }
    Effect(const Effect &) = delete;
    Effect &operator=(const Effect &) = delete;
    yajl_val get() const { return root_; }

private:
    yajl_val root_;
};

// Any JSON value, kept alive inside a loaded wrapper document.
class JsonValue {
public:
    explicit JsonValue(const std::string &value)
        : doc_(R"({"identifier":"t","processors":[],"v":)" + value + "}") {}
    yajl_val get() const { return member(doc_.get(), "v"); }

private:
    Effect doc_;
};

// An effect of one processor with this name and parameter object text.
inline std::string one_step(const std::string &name, const std::string &parameters) {
    return R"({"identifier":"t","processors":[{"name":")" + name +
           R"(","parameters":)" + parameters + "}]}";
}

}  // namespace vok_test

#endif
