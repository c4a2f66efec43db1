// SPDX-License-Identifier: MIT
#pragma once

#include "model.h"

#include <boost/make_shared.hpp>

#include <random>
#include <string>
#include <vector>

/// Changes a model's records at random, the way anybody may: through the model, and directly in
/// its public vector and in the records' names. Names come from a small set, so that many meet.
class RandomRecords
{
public:
    RandomRecords(Model& model, unsigned seed) : fModel(model), fGenerator(seed) {}

    std::size_t below(std::size_t bound)
    {
        return std::uniform_int_distribution<std::size_t>(0, bound - 1)(fGenerator);
    }

    std::string name()
    {
        const std::string number = std::to_string(below(12));
        return below(2) == 0 ? number : "a name beyond the small text buffer " + number;
    }

    void change()
    {
        auto& records = fModel.fSTMVals;
        const auto any = [&] { return records.begin() + static_cast<long>(below(records.size())); };
        const std::size_t kind = records.empty() ? 0 : below(40);
        if (kind < 8)
            fModel.addSTMVal(name(), name());
        else if (kind < 12)
            records.insert(any(), record());
        else if (kind < 20)
            records.erase(any());
        else if (kind < 24)
            std::swap(*any(), *any());
        else if (kind < 28)
            *any() = record();
        else if (kind < 32)
            (*any())->names.first = name();
        else if (kind < 36)
            (*any())->names.second = name();
        else if (kind < 38)
            (*any())->watch = !(*any())->watch;
        else if (kind < 39)
            fModel.addSTMVal(*any()); // the same record once more
        else
            fModel.resetSTMVals();
    }

    void grow(std::size_t count)
    {
        while (fModel.fSTMVals.size() < count)
            fModel.addSTMVal(name(), name());
    }

private:
    boost::shared_ptr<STMVal> record()
    {
        auto made = boost::make_shared<STMVal>();
        made->names = {name(), name()};
        made->watch = below(2) == 0;
        return made;
    }

    Model& fModel;
    std::mt19937 fGenerator;
};
