// Parsing a description into yajl's tree, the same tree yajl_tree_parse
// builds (the converters read its number flags), but without crashing when
// memory runs out: yajl's own buffers assert on a failed allocation, so the
// parser here gets allocation functions that give up cleanly instead.
#include "effects/effects_internal.h"

#include <cerrno>
#include <climits>
#include <cstddef>
#include <csetjmp>
#include <cstdlib>
#include <cstring>

#include <yajl/yajl_parse.h>

namespace vok {
namespace {

// Every block yajl takes is linked here, so that after a failed allocation
// the parser's half-built state can be released without asking the parser.
struct Block {
    Block *previous, *next;
    max_align_t align[1];  // the caller's bytes start here
};

constexpr size_t kHeader = offsetof(Block, align);

struct Arena {
    Block head{&head, &head, {}};
    jmp_buf out_of_memory;
};

void link(Arena *arena, Block *block) {
    block->next = arena->head.next;
    block->previous = &arena->head;
    arena->head.next->previous = block;
    arena->head.next = block;
}

void unlink(Block *block) {
    block->previous->next = block->next;
    block->next->previous = block->previous;
}

void *arena_malloc(void *context, size_t size) {
    auto *arena = static_cast<Arena *>(context);
    auto *block = static_cast<Block *>(malloc(kHeader + size));
    if (block == nullptr) longjmp(arena->out_of_memory, 1);
    link(arena, block);
    return reinterpret_cast<char *>(block) + kHeader;
}

void arena_free(void *, void *pointer) {
    if (pointer == nullptr) return;
    auto *block = reinterpret_cast<Block *>(static_cast<char *>(pointer) - kHeader);
    unlink(block);
    free(block);
}

void *arena_realloc(void *context, void *pointer, size_t size) {
    if (pointer == nullptr) return arena_malloc(context, size);
    auto *arena = static_cast<Arena *>(context);
    auto *block = reinterpret_cast<Block *>(static_cast<char *>(pointer) - kHeader);
    unlink(block);
    auto *moved = static_cast<Block *>(realloc(block, kHeader + size));
    if (moved == nullptr) {
        link(arena, block);  // still owned, released with the rest
        longjmp(arena->out_of_memory, 1);
    }
    link(arena, moved);
    return reinterpret_cast<char *>(moved) + kHeader;
}

void release_all(Arena *arena) {
    while (arena->head.next != &arena->head) {
        Block *block = arena->head.next;
        unlink(block);
        free(block);
    }
}

// The tree under construction. Every value is attached to its container as
// soon as it exists, so freeing the root frees everything built so far; the
// loader refuses nesting deeper than 64 before parsing, which bounds the stack.
struct Builder {
    yajl_val root = nullptr;
    yajl_val stack[66] = {};
    int depth = 0;
    char *pending_key = nullptr;
};

yajl_val new_value(yajl_type type) {
    auto value = static_cast<yajl_val>(calloc(1, sizeof(yajl_val_s)));
    if (value != nullptr) value->type = type;
    return value;
}

char *copy_text(const unsigned char *text, size_t length) {
    char *copy = static_cast<char *>(malloc(length + 1));
    if (copy == nullptr) return nullptr;
    memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

// Grows a container's arrays by one slot; false (nothing lost) when memory is out.
template <typename T>
bool grow(T **array, size_t length) {
    T *bigger = static_cast<T *>(realloc(*array, (length + 1) * sizeof(T)));
    if (bigger == nullptr) return false;
    *array = bigger;
    return true;
}

// Hands `value` to the open container (or makes it the root); 0 stops the
// parse when the value or room for it could not be had.
int attach(Builder *builder, yajl_val value) {
    if (value == nullptr) return 0;
    if (builder->depth == 0) {
        builder->root = value;
        return 1;
    }
    yajl_val container = builder->stack[builder->depth - 1];
    if (container->type == yajl_t_object) {
        auto &object = container->u.object;
        if (builder->pending_key == nullptr || !grow(&object.keys, object.len) ||
            !grow(&object.values, object.len)) {
            yajl_tree_free(value);
            return 0;
        }
        object.keys[object.len] = builder->pending_key;
        object.values[object.len++] = value;
        builder->pending_key = nullptr;
        return 1;
    }
    auto &array = container->u.array;
    if (!grow(&array.values, array.len)) {
        yajl_tree_free(value);
        return 0;
    }
    array.values[array.len++] = value;
    return 1;
}

int open_container(Builder *builder, yajl_type type) {
    yajl_val value = new_value(type);
    if (!attach(builder, value)) return 0;
    builder->stack[builder->depth++] = value;
    return 1;
}

int close_container(void *context) {
    --static_cast<Builder *>(context)->depth;
    return 1;
}

// Decimal digits with an optional sign, saturating with ERANGE as yajl does;
// anything else (a fraction, an exponent) is ERANGE too.
long long parse_integer(const unsigned char *text, size_t length) {
    const unsigned char *p = text, *end = text + length;
    const bool negative = p < end && *p == '-';
    if (negative || (p < end && *p == '+')) ++p;
    long long value = 0;
    for (; p < end; ++p) {
        if (*p < '0' || *p > '9' || value > LLONG_MAX / 10 + LLONG_MAX % 10 ||
            LLONG_MAX - value * 10 < *p - '0') {
            errno = ERANGE;
            return negative ? LLONG_MIN : LLONG_MAX;
        }
        value = value * 10 + (*p - '0');
    }
    return negative ? -value : value;
}

int on_null(void *context) {
    return attach(static_cast<Builder *>(context), new_value(yajl_t_null));
}

int on_boolean(void *context, int value) {
    return attach(static_cast<Builder *>(context), new_value(value ? yajl_t_true : yajl_t_false));
}

int on_number(void *context, const char *text, size_t length) {
    yajl_val value = new_value(yajl_t_number);
    if (value == nullptr) return 0;
    auto &number = value->u.number;
    number.r = copy_text(reinterpret_cast<const unsigned char *>(text), length);
    if (number.r == nullptr) {
        free(value);
        return 0;
    }
    errno = 0;
    number.i = parse_integer(reinterpret_cast<const unsigned char *>(number.r), length);
    if (errno == 0) number.flags |= YAJL_NUMBER_INT_VALID;
    char *stop = nullptr;
    errno = 0;
    number.d = strtod(number.r, &stop);
    if (errno == 0 && stop != nullptr && *stop == '\0') number.flags |= YAJL_NUMBER_DOUBLE_VALID;
    return attach(static_cast<Builder *>(context), value);
}

int on_string(void *context, const unsigned char *text, size_t length) {
    yajl_val value = new_value(yajl_t_string);
    if (value == nullptr) return 0;
    value->u.string = copy_text(text, length);
    if (value->u.string == nullptr) {
        free(value);
        return 0;
    }
    return attach(static_cast<Builder *>(context), value);
}

int on_key(void *context, const unsigned char *text, size_t length) {
    auto *builder = static_cast<Builder *>(context);
    free(builder->pending_key);
    builder->pending_key = copy_text(text, length);
    return builder->pending_key != nullptr;
}

int on_start_map(void *context) {
    return open_container(static_cast<Builder *>(context), yajl_t_object);
}

int on_start_array(void *context) {
    return open_container(static_cast<Builder *>(context), yajl_t_array);
}

// Numbers come raw (on_number), so the integer and double callbacks stay unset.
const yajl_callbacks kCallbacks = {on_null,         on_boolean,     nullptr,        nullptr,
                                   on_number,       on_string,      on_start_map,   on_key,
                                   close_container, on_start_array, close_container};

// Parses inside the arena; returns false when the text is not JSON or the
// tree could not be built. Kept apart from the setjmp so that nothing it
// changes needs to survive the jump.
bool run_parser(Arena *arena, Builder *builder, const char *text) {
    yajl_alloc_funcs functions = {arena_malloc, arena_realloc, arena_free, arena};
    yajl_handle handle = yajl_alloc(&kCallbacks, &functions, builder);
    yajl_config(handle, yajl_allow_comments, 1);
    const size_t length = strlen(text);
    bool ok = yajl_parse(handle, reinterpret_cast<const unsigned char *>(text), length) ==
                  yajl_status_ok &&
              yajl_complete_parse(handle) == yajl_status_ok;
    yajl_free(handle);
    return ok;
}

// The landing place of a failed allocation. Arena and builder belong to the
// caller, so nothing local to this frame changes between setjmp and longjmp.
bool guarded_parse(Arena *arena, Builder *builder, const char *text) {
    if (setjmp(arena->out_of_memory) != 0) return false;
    return run_parser(arena, builder, text);
}

}  // namespace

yajl_val parse_json_tree(const char *text) {
    Arena arena;
    Builder builder;
    const bool ok = guarded_parse(&arena, &builder, text);
    release_all(&arena);
    free(builder.pending_key);
    if (ok) return builder.root;
    yajl_tree_free(builder.root);
    return nullptr;
}

}  // namespace vok
