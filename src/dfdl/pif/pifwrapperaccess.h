#ifndef DFDL_PIF_PIFWRAPPERACCESS_H
#define DFDL_PIF_PIFWRAPPERACCESS_H

namespace PIF {
class MPIF;
}
namespace PIFWrapper {
class MPIF;
}

// The message behind a wrapper; null for no wrapper.
const PIF::MPIF* PIFWrapper_message(const PIFWrapper::MPIF* wrapper);

#endif
