// SPDX-License-Identifier: MIT
#pragma once

/// Told by the Module and its users about changes of the key set's values. Nobody deletes an
/// observer through this interface, so it has no virtual destructor.
class GCInterface
{
public:
    /// Some values changed.
    virtual void refreshTree() = 0;
    /// The set of keys changed.
    virtual void resetTree() = 0;

protected:
    ~GCInterface() = default;
};
