#include <KivStorage/SizeTotals.h>

namespace KivStorage {

SizeTotals::~SizeTotals() = default;

void SizeTotals::AddSizes(std::int32_t shorts, std::int32_t doubles, std::int32_t guids, std::int32_t longs,
                          std::int32_t objects) {
    shorts_ += shorts;
    doubles_ += doubles;
    guids_ += guids;
    longs_ += longs;
    objects_ += objects;
}

}  // namespace KivStorage
