// SPDX-License-Identifier: MIT
#pragma once

#include "support/fake_memory.h"

#include "gc_interface.h"
#include "model.h"
#include "module.h"

#include <cstddef>
#include <functional>
#include <initializer_list>

/// A module over a fake memory, observed.
struct ModuleBench
{
    /// Counts what it is told, and does what the test wants then.
    class Observer final : public GCInterface
    {
    public:
        void refreshTree() override
        {
            ++refreshed;
            if (whenRefreshed)
                whenRefreshed();
        }
        void resetTree() override { ++reset; }

        int refreshed = 0;
        int reset = 0;
        std::function<void()> whenRefreshed;
    };

    ModuleBench() { module.fGCInterface = &observer; }

    Model& model() { return *module.fModel; }
    const STMVal& record(std::size_t index) { return *module.fModel->fSTMVals.at(index); }

    FakeMemory memory;
    Observer observer;
    Module module{memory.proxy()};
};

inline ZoValue arrayOf(std::initializer_list<ZoValue> values)
{
    ZoValue result;
    result.arraySetSize(static_cast<int>(values.size()));
    int i = 0;
    for (const ZoValue& value : values)
        result[i++] = value;
    return result;
}
