#ifndef DFDL_PIF_CPIFLOADER_H
#define DFDL_PIF_CPIFLOADER_H

#include <cstddef>

struct sPIF;
namespace PIF {
class MPIF;
}
namespace PIFWrapper {
class MPIF;
}

// Fills a new grammar from a message, which it does not keep. Lives for one load; the only place that knows
// Protocol Buffers.
//
// All functions leave the result code of the exported functions (<dfdl/dfdl.h>) in *resultCode and answer
// false for all but DFDL_GRAMMAR_LOADED.
struct CPIFLoader {
    sPIF* pif;
};

inline constexpr int NEWEST_PIF_VERSION = 40;

bool CPIFLoader_readFile(CPIFLoader* this_, const char* path, int* resultCode);
bool CPIFLoader_readBytes(CPIFLoader* this_, const char* bytes, size_t length, int* resultCode);
bool CPIFLoader_readWrapper(CPIFLoader* this_, const PIFWrapper::MPIF* wrapper, int* resultCode);
bool CPIFLoader_loadPIF(CPIFLoader* this_, const PIF::MPIF& message, int* resultCode);

bool LoadPIF(sPIF* pif, const char* path, int* resultCode);
bool LoadPIFFromStream(sPIF* pif, const char* bytes, size_t length, int* resultCode);
bool LoadPIFFromWrappedPIF(sPIF* pif, const PIFWrapper::MPIF* wrapper, int* resultCode);

#endif
