#include "Platform/NSURLSession.h"

#include "Platform/Platform.h"

namespace platform {

NSURLSession& NSURLSession::shared() { return Platform::current().sharedURLSession(); }

}  // namespace platform
