#include "model.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

/// One less than a channel has values: no random colour is ever full white.
constexpr int randomChannelValues = 255;

const char* typeName(int code)
{
    static constexpr std::array<const char*, 6> names{"invalid", "array", "bool",
                                                      "int",     "float", "string"};
    const bool known = code >= 0 && code < static_cast<int>(names.size());
    return known ? names[static_cast<std::size_t>(code)] : "unknown";
}

bool isNumber(const STMVal& record)
{
    return record.type == "int" || record.type == "float";
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
        return "No subcription"; // these very letters: it is a label that saved texts repeat
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
    fTimePolicy = std::min(std::max(period, int{fMinTime}), int{fMaxTime});
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
            record->type = typeName(value.getType());
            value.toString(ZoNormal, record->value);
            return true;
        }
    }
    return false;
}

bool Model::getDoubleVal(const std::string& alias, double& result) const
{
    const ZoCriticalSectionRead guard(fMutex);
    for (const auto& record : fSTMVals) {
        if (record->names.second == alias) {
            if (!isNumber(*record))
                return false;
            result = std::strtod(record->value.c_str(), nullptr);
            return true;
        }
    }
    return false;
}
