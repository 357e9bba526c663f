// One property request of the agent's, with more and more properties.
#include "bench/floor/FloorAgent.h"
#include "bench/floor/FloorTable.h"
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

using Modules = FloorTable<VsKitMsgbus::INYCollectProperties>;

// Has `request(modules)` ask a module with so many properties, so often.
template <class Request>
double Requests(size_t count, size_t properties, Request request) {
    bool areSet = true;
    Collecting module([&](ISet& set) {
        for (size_t i = 0; i < properties; ++i) {
            const Property& property = PropertyAt(i);
            areSet = set.SetProperty(property.path, property.name, property.value) && areSet;
        }
    });
    Modules modules;
    modules.Set(bareWideProductId, module);
    const double seconds = SecondsOf([&] {
        for (size_t i = 0; i < count; ++i) {
            request(modules);
        }
    });
    if (!areSet) {
        throw std::runtime_error("a property was refused");
    }
    return seconds;
}

void RequestOfOurs(Modules& /*modules*/) {
    const auto& registered = TheBareAgent()->properties;
    if (registered.callback(nullptr, bareProductId, barePropertyBag, registered.userData) != NY_OK) {
        throw std::runtime_error("the request was refused");
    }
}

void RequestAtFloor(Modules& modules) {
    const auto found = modules.Find(FloorWiden(bareProductId));
    FloorCollect(**found, barePropertyBag);
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
                      {{"ours", [=](size_t count) { return Requests(count, properties, RequestOfOurs); }},
                       {"floor", [=](size_t count) { return Requests(count, properties, RequestAtFloor); }}},
                      properties == 1 ? 1.3 : 1.15});
    }
}

}  // namespace bench
