// Loading and unloading effect descriptions.
#include "effects/effects_internal.h"

#include <cstring>

namespace {

// yajl parses any depth but frees its tree recursively, and a description is
// never legitimately this large; both limits are checked before yajl runs.
constexpr size_t kMaxDescriptionBytes = 16u * 1024u * 1024u;
constexpr uint32_t kMaxNesting = 64;

// Deepest nesting of [ and { outside strings and comments (yajl accepts
// both comment forms), stopping early once it passes the limit. Malformed
// text is left for yajl to reject.
uint32_t nesting_depth(const char *text) {
    uint32_t depth = 0, deepest = 0;
    for (const char *p = text; *p; ++p) {
        const char c = *p;
        if (c == '"') {
            for (++p; *p && *p != '"'; ++p) {
                if (*p == '\\' && !*++p) return deepest;
            }
            if (!*p) return deepest;
        } else if (c == '/' && p[1] == '/') {
            while (p[1] && p[1] != '\n') ++p;
        } else if (c == '/' && p[1] == '*') {
            for (p += 2; *p && !(p[0] == '*' && p[1] == '/'); ++p) {
            }
            if (!*p) return deepest;
            ++p;
        } else if (c == '[' || c == '{') {
            if (++depth > deepest) deepest = depth;
            if (deepest > kMaxNesting) return deepest;
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return deepest;
}

}  // namespace

namespace vok {

bool has_envelope(yajl_val root) {
    return json_string(root, "identifier") && json_array(root, "processors");
}

}  // namespace vok

extern "C" {

VokJsonValue TESKLoadEffect(const char *json) {
    if (!json) return nullptr;
    if (strnlen(json, kMaxDescriptionBytes + 1) > kMaxDescriptionBytes) {
        VOK_LOGD("Effect description refused: longer than 16 MiB.");
        return nullptr;
    }
    if (nesting_depth(json) > kMaxNesting) {
        VOK_LOGD("Effect description refused: nested deeper than 64 levels.");
        return nullptr;
    }
    yajl_val root = vok::parse_json_tree(json);
    if (!root) {
        VOK_LOGD("Invalid JSON string.");
        return nullptr;
    }
    if (!vok::has_envelope(root)) {
        VOK_LOGD("Missing or problematic identifier property and/or processors property");
        yajl_tree_free(root);
        return nullptr;
    }
    return root;
}

void TESKUnloadEffect(VokJsonValue *effect) {
    if (!effect) return;
    yajl_tree_free(*effect);
    *effect = nullptr;
}

}  // extern "C"
