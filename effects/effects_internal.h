// Private helpers shared by the effect loader, the value converters and the
// processor runners.
#ifndef VOK_EFFECTS_INTERNAL_H
#define VOK_EFFECTS_INTERNAL_H

#include <cstdint>

#include <yajl/yajl_tree.h>

#include "core/log.h"
#include "vok/effects.h"

namespace vok {

// The one-key lookup every runner uses: the member `key` of `node` when
// `node` is an object holding it with the demanded type, else null.
yajl_val json_get(yajl_val node, const char *key, yajl_type type);

inline yajl_val json_string(yajl_val node, const char *key) {
    return json_get(node, key, yajl_t_string);
}
inline yajl_val json_number(yajl_val node, const char *key) {
    return json_get(node, key, yajl_t_number);
}
inline yajl_val json_object(yajl_val node, const char *key) {
    return json_get(node, key, yajl_t_object);
}
inline yajl_val json_array(yajl_val node, const char *key) {
    return json_get(node, key, yajl_t_array);
}

inline bool json_is_object(yajl_val node) { return node && node->type == yajl_t_object; }

// Text of a string node; null for anything else.
inline const char *json_text(yajl_val node) {
    return node && node->type == yajl_t_string ? node->u.string : nullptr;
}

// The two readings of a number node, each with yajl's validity flag.
inline bool json_integer_valid(yajl_val number) {
    return number && number->type == yajl_t_number &&
           (number->u.number.flags & YAJL_NUMBER_INT_VALID);
}
inline bool json_double_valid(yajl_val number) {
    return number && number->type == yajl_t_number &&
           (number->u.number.flags & YAJL_NUMBER_DOUBLE_VALID);
}
inline long long json_integer(yajl_val number) { return number->u.number.i; }
inline double json_double(yajl_val number) { return number->u.number.d; }

// The double reading of `node[key]` when it is a number with the double-valid
// flag, else `fallback`.
double json_double_or(yajl_val node, const char *key, double fallback);

// The tree of a JSON text (comments allowed), exactly as yajl_tree_parse
// builds it, or null when the text is not JSON or memory ran out at any point
// (nothing is left allocated then). Free it with yajl_tree_free.
yajl_val parse_json_tree(const char *text);

// True when the root carries a string "identifier" and a "processors" array.
bool has_envelope(yajl_val root);

// Position of `text` in a keyword table (exact, case-sensitive), or -1.
int32_t keyword_index(const char *const *table, uint32_t count, const char *text);

}  // namespace vok

#endif
