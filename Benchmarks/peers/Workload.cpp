#include "Workload.h"

namespace Peers {

const TextValue& GetRecordText() {
    static const TextValue text{u"a name of some length", "a name of some length"};
    return text;
}

const GuidValue& GetRecordGuid() {
    static const GuidValue guid{{0x00000001, 0x0002, 0x0003, {4, 5, 6, 7, 8, 9, 10, 11}},
                                std::string_view("\1\0\0\0\2\0\3\0\4\5\6\7\10\11\12\13", 16),
                                "00000001-0002-0003-0405-060708090a0b"};
    return guid;
}

}  // namespace Peers
