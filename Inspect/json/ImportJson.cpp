#include <KivInspect/ImportJson.h>

#include <new>

#include "files/Failure.h"
#include "files/LimitedSource.h"
#include "json/ImportHandler.h"
#include "json/JsonParser.h"

namespace KivInspect {

ImportResult ImportJson(Source& source, const std::string& place, const KivStorage::LoadOptions& options) {
    ImportResult imported;
    imported.result = Guarded([&] {
        imported.tree = KivGenerics::CreateGenericTree(options.objectType);
        if (!imported.tree) {
            throw std::bad_alloc();
        }
        ImportHandler handler(imported, options.limits.nesting);
        LimitedSource limited(source, options.limits.totalBytes);
        ParseJson(limited, place, handler);
    });
    if (!imported.result.Ok()) {
        imported.tree.Reset();
        imported.names = Names();
    }
    return imported;
}

}  // namespace KivInspect
