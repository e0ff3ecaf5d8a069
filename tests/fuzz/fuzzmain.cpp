// The libFuzzer entry of one target, named by PAGAMENTI_FUZZ_TARGET (see fuzztargets.h).
#include "fuzztargets.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    pg::fuzz::PAGAMENTI_FUZZ_TARGET(
        QByteArrayView(reinterpret_cast<const char *>(data), qsizetype(size)));
    return 0;
}
