// SPDX-License-Identifier: MIT
#pragma once

#include <link/link_actions.h>

#include <string>

/// An action of a link, for people.
std::string actionText(const zo::LinkAction::Any& action);
