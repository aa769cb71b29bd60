// Gives every suite VOK_TEST_DATA (tests/data) and VOK_EXAMPLES (examples/)
// pointing into the source tree, unless the environment already sets them.
// Linked into each test executable as an object of its own, so it runs before
// main() without any test referring to it.
#include <cstdlib>

namespace {

struct DefaultPaths {
    DefaultPaths() {
        setenv("VOK_TEST_DATA", VOK_TEST_DATA_DIR, 0);
        setenv("VOK_EXAMPLES", VOK_EXAMPLES_DIR, 0);
    }
};

const DefaultPaths default_paths;

}  // namespace
