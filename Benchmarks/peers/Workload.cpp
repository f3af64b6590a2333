#include "Workload.h"

namespace Peers {

const TextValue& GetRecordText() {
    static const TextValue text{u"a name of some length", "a name of some length"};
    return text;
}

const GuidValue& GetRecordGuid() {
    static const GuidValue guid = MakeGuidValue({1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}});
    return guid;
}

}  // namespace Peers
