// SPDX-License-Identifier: MIT
#include "model.h"

#include "record_finder.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <new>

namespace {

/// One less than a channel has values: no random colour is ever full white.
constexpr int randomChannelValues = 255;

/// No number's text is longer: "-2.2250738585072014e-308".
constexpr std::size_t longestNumber = 24;

locale_t makePlainLocale()
{
    const locale_t made = newlocale(LC_ALL_MASK, "C", nullptr);
    if (!made)
        throw std::bad_alloc();
    return made;
}

/// As in the plain locale: anything in the process may have set one in which 0.5 reads as 0.
double readNumber(const std::string& text)
{
    static const locale_t plain = makePlainLocale();
    return strtod_l(text.c_str(), nullptr, plain);
}

/// Parsed from the text at every call: a graph plots exactly what the table shows.
std::optional<double> numberOf(const STMVal& record)
{
    if (record.type != "int" && record.type != "float")
        return std::nullopt;
    return readNumber(record.value);
}

} // namespace

Color::Color()
    : red(std::rand() % randomChannelValues),
      green(std::rand() % randomChannelValues),
      blue(std::rand() % randomChannelValues)
{
}

Model::Model()
    : fSubscribeMode(SUBSCRIBE_NONE), fTimePolicy(100), fMutex(ZoMutexRW::createZoMutexRW())
{
}

Model::~Model() = default;

std::string Model::subscribeModeToString(SubscribeMode mode)
{
    switch (mode) {
    case SUBSCRIBE_EVERY:
        return "Every <nb> ms";
    case SUBSCRIBE_NONE:
        return "No subcription"; // these very letters: the mode is told by them
    case SUBSCRIBE_ON_DATA:
        return "Subscribe on data";
    default:
        return "mode unknown";
    }
}

Model::SubscribeMode Model::subscribeModeFromString(const std::string& text)
{
    for (const SubscribeMode mode : {SUBSCRIBE_EVERY, SUBSCRIBE_NONE, SUBSCRIBE_ON_DATA}) {
        if (text == subscribeModeToString(mode))
            return mode;
    }
    return SUBSCRIBE_UNKNOWN;
}

void Model::setTimePolicy(int period)
{
    fTimePolicy = std::clamp(period, fMinTime, fMaxTime);
}

void Model::addSTMVal(boost::shared_ptr<STMVal> value)
{
    const ZoCriticalSectionWrite guard(fMutex);
    fSTMVals.push_back(std::move(value));
}

void Model::addSTMVal(const std::string& name, const std::string& alias)
{
    const ZoCriticalSectionWrite guard(fMutex);
    auto record = boost::make_shared<STMVal>();
    record->names = {name, alias};
    fSTMVals.push_back(std::move(record));
}

void Model::resetSTMVals()
{
    const ZoCriticalSectionWrite guard(fMutex);
    fSTMVals.clear();
}

bool Model::refreshSTMVal(const std::string& name, const ZoValue& value)
{
    const ZoCriticalSectionWrite guard(fMutex);
    for (const auto& record : fSTMVals) {
        if (record->names.first == name) {
            xStore(*record, value);
            return true;
        }
    }
    return false;
}

void Model::refreshSTMVals(const ZoValue& request, const ZoValue& reply, KeyFinder& byKey)
{
    std::uint64_t ownWrites = 0;
    for (int i = 0; i < reply.getSize(); ++i) {
        const ZoCriticalSectionWrite guard(fMutex);
        // Others may have changed the keys while the lock was free.
        if (i == 0 || fMutex->writeCount() != ++ownWrites) {
            byKey.begin();
            ownWrites = fMutex->writeCount();
        }
        if (STMVal* record = byKey.find(fSTMVals, request[i][0].asString()))
            xStore(*record, reply[i]);
    }
}

/// When the memory runs out halfway, the record still has its old text: the new one is made beside
/// it, in memory that is used again, unless it is sure to fit.
void Model::xStore(STMVal& record, const ZoValue& value)
{
    const int type = value.getType();
    record.type = ZoValue::typeName(type);
    const bool isNumber = type == ZoValue::Int || type == ZoValue::Float;
    if (isNumber && record.value.capacity() >= longestNumber) {
        value.toString(ZoNormal, record.value);
        return;
    }
    value.toString(ZoNormal, fText);
    record.value = fText;
}

bool Model::getDoubleVal(const std::string& alias, double& result) const
{
    const ZoCriticalSectionRead guard(fMutex);
    for (const auto& record : fSTMVals) {
        if (record->names.second == alias) {
            const std::optional<double> number = numberOf(*record);
            if (number)
                result = *number;
            return number.has_value();
        }
    }
    return false;
}

void Model::getDoubleVals(const std::vector<std::string>& aliases, AliasFinder& byAlias,
                          std::vector<std::optional<double>>& numbers) const
{
    numbers.resize(aliases.size());
    const ZoCriticalSectionRead guard(fMutex);
    byAlias.begin();
    for (std::size_t i = 0; i < aliases.size(); ++i) {
        const STMVal* record = byAlias.find(fSTMVals, aliases[i]);
        numbers[i] = record ? numberOf(*record) : std::nullopt;
    }
}
