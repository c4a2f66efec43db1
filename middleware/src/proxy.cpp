#include <zo/proxy.h>

ZoProxy::~ZoProxy() = default;
