#include "effects/effects_internal.h"

#include <cstring>

namespace vok {

yajl_val json_get(yajl_val node, const char *key, yajl_type type) {
    const char *path[] = {key, nullptr};
    return yajl_tree_get(node, path, type);
}

double json_double_or(yajl_val node, const char *key, double fallback) {
    yajl_val number = json_number(node, key);
    return json_double_valid(number) ? json_double(number) : fallback;
}

int32_t keyword_index(const char *const *table, uint32_t count, const char *text) {
    for (uint32_t i = 0; i < count; ++i) {
        if (table[i] && strcmp(table[i], text) == 0) return static_cast<int32_t>(i);
    }
    return -1;
}

}  // namespace vok
