// Helpers of the effect suites: JSON parsed by the library's own loader,
// effect parameters, and the captured log as lines.
#ifndef VOK_TESTS_JSON_DOC_H
#define VOK_TESTS_JSON_DOC_H

#include <cstring>
#include <string>
#include <vector>

#include <yajl/yajl_tree.h>

#include "support/log_capture.h"
#include "vok/vok_lite.h"

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
class JsonValue : Effect {
public:
    explicit JsonValue(const std::string &value) : Effect(R"({"identifier":"t","processors":[],"v":)" + value + "}") {}
    yajl_val get() const { return member(Effect::get(), "v"); }
};

inline VokEffectParams params_with(double strength, int32_t seed = 0) {
    VokEffectParams p;
    VokEffectInitParams(&p);
    p.strength = strength, p.seed = seed;
    return p;
}

using Lines = std::vector<std::string>;

// Each message as "priority text"; a foreign tag shows in front.
inline Lines lines(const LogCapture &log) {
    Lines out;
    for (const auto &m : log.messages())
        out.push_back((m.tag == "vok-lite" ? "" : m.tag + ": ") + std::to_string(m.priority) + " " + m.text);
    return out;
}

}  // namespace vok_test

#endif
