// One property request of the agent's, with more and more properties.
#include "bench/floor/FloorAgent.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"

namespace bench {

namespace {

struct Property {
    const wchar_t* path;
    const wchar_t* name;
    const wchar_t* value;
};

// As modules have them: short and long names.
constexpr Property someProperties[] = {
    {L"General", L"ProductVersion", L"10.7.0.5786"},
    {L"General", L"InstalledPath", L"C:\\Program Files\\Endpoint\\Threat Prevention"},
    {L"OnAccessScan", L"bScanArchives", L"1"},
    {L"ContentInformation", L"EngineVersionAndContentDate", L"6400.9594 2026-11-20"},
};

const Property& PropertyAt(size_t index) {
    return someProperties[index % std::size(someProperties)];
}

void Request() {
    const auto& registered = TheBareAgent()->properties;
    if (registered.callback(nullptr, bareProductId, barePropertyBag, registered.userData) != NY_OK) {
        throw std::runtime_error("the request was refused");
    }
}

double RequestsOfOurs(size_t count, size_t properties) {
    bool areSet = true;
    const Collecting module([&](ISet& set) {
        for (size_t i = 0; i < properties; ++i) {
            const Property& property = PropertyAt(i);
            areSet = set.SetProperty(property.path, property.name, property.value) && areSet;
        }
    });
    const double seconds = SecondsOf([&] {
        for (size_t i = 0; i < count; ++i) {
            Request();
        }
    });
    if (!areSet) {
        throw std::runtime_error("a property was refused");
    }
    return seconds;
}

double RequestsAtFloor(size_t count, size_t properties) {
    return SecondsOf([&] {
        for (size_t i = 0; i < count; ++i) {
            FloorWiden(bareProductId);
            for (size_t n = 0; n < properties; ++n) {
                const Property& property = PropertyAt(n);
                FloorSetProperty(barePropertyBag, property.path, property.name, property.value);
            }
        }
    });
}

}  // namespace

void MeasureProperties(Session& session) {
    const Stage stage;
    const Entered entered(VsMsgbusServiceProperty);
    OpenFloorAgent(stage.Folder());
    for (const size_t properties : {size_t{1}, size_t{100}, size_t{10000}}) {
        session.Race({"properties",
                      std::to_string(properties) + (properties == 1 ? " property" : " properties"),
                      static_cast<double>(properties),
                      static_cast<double>(properties),
                      {{"ours", [=](size_t count) { return RequestsOfOurs(count, properties); }},
                       {"floor", [=](size_t count) { return RequestsAtFloor(count, properties); }}},
                      1.15});
    }
}

}  // namespace bench
