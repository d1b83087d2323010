#include "store/store_services.h"

namespace pmx {

const StoreServices& SystemStoreServices() {
    static const StoreServices Services{SystemFiles(), SystemClock()};
    return Services;
}

} // namespace pmx
