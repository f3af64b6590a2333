#include <KivInspect/JsonForm.h>

#include "files/Failure.h"
#include "files/LimitedSource.h"
#include "json/FormHandler.h"
#include "json/JsonParser.h"

namespace KivInspect {

KivStorage::LoadResult ReadJson(Source& source, const std::string& place, const KivStorage::LoadOptions& options) {
    KivStorage::LoadResult loaded;
    loaded.result = Guarded([&] {
        TreeBuilder builder(options);
        FormHandler handler(builder);
        LimitedSource limited(source, options.limits.totalBytes);
        ParseJson(limited, place, handler);
        loaded.tree = builder.Take();
    });
    return loaded;
}

}  // namespace KivInspect
