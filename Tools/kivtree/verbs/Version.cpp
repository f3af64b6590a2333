#include "kivtree/Verbs.h"

namespace KivTree {

Run DefineVersion(CLI::App& /*words*/) {
    return [](Context& context) {
        context.Out().Write("kivtree " KIVTREE_VERSION "\n");
        return ExitSuccess;
    };
}

}  // namespace KivTree
