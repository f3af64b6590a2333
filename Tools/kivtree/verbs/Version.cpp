#include "kivtree/Verbs.h"

namespace KivTree {

Run DefineVersion(CommandLine& /*words*/) {
    return [](Context& context) {
        context.Out().Write("kivtree " KIVTREE_VERSION "\n");
        return ExitSuccess;
    };
}

}  // namespace KivTree
