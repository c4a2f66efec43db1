// SPDX-License-Identifier: MIT
#include <kit/refusal.h>

#include <zo/error.h>
#include <zo/link_status.h>

namespace kit {

void throwIfRefused(const ZoLinkStatus& link)
{
    if (link.refused)
        throw ZoError(link.cause);
}

} // namespace kit
