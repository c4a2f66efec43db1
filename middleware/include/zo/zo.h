// SPDX-License-Identifier: MIT
#pragma once

/// The whole client library of the robot's middleware.

#include <zo/address.h>
#include <zo/broker.h>
#include <zo/broker_options.h>
#include <zo/check.h>
#include <zo/cluster.h>
#include <zo/error.h>
#include <zo/json.h>
#include <zo/link_status.h>
#include <zo/list_answer.h>
#include <zo/memory_proxy.h>
#include <zo/mutex.h>
#include <zo/proxy.h>
#include <zo/value.h>
#include <zo/version.h>
