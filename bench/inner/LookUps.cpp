// Finding a product's record and calling it, from several threads, with and without others that register and remove.
#include <atomic>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <thread>
#include <unordered_map>

#include "bench/inner/Measurements.h"
#include "msgbus/registrations/RegistrationTable.h"

using namespace bridge;

namespace bench {

namespace {

struct Record {
    explicit Record(const void* /*moduleInterface*/ = nullptr) noexcept {}

    int32_t Call() const noexcept { return value.load(std::memory_order_relaxed); }
    std::atomic<int32_t> value = 1;
};

// What the property service's table is, and what the task service's is.
class OurTable {
public:
    void Set(const std::wstring& id) { table.Set(id.c_str(), this); }
    void Remove(const std::wstring& id) { table.Remove(id.c_str()); }
    int32_t Call(const std::wstring& id) {
        int32_t answer = 0;
        table.With(id, [&](const Record& record, auto&& /*wasRemoved*/) { answer = record.Call(); });
        return answer;
    }

private:
    RegistrationTable<Record, CallGate::Admission::OneThreadAtATime> table;
};

// The least that lets a product be removed while it is called: a lock around a map, and shared records.
template <class Mutex, class ReadLock>
class PlainTable {
public:
    void Set(const std::wstring& id) {
        const std::lock_guard guard(mutex);
        records.try_emplace(id, std::make_shared<Record>());
    }
    void Remove(const std::wstring& id) {
        const std::lock_guard guard(mutex);
        records.erase(id);
    }
    int32_t Call(const std::wstring& id) {
        const std::shared_ptr<Record> record = Find(id);
        return record != nullptr ? record->Call() : 0;
    }

private:
    std::shared_ptr<Record> Find(const std::wstring& id) {
        const ReadLock guard(mutex);
        const auto found = records.find(id);
        return found != records.end() ? found->second : nullptr;
    }

    Mutex mutex;
    std::unordered_map<std::wstring, std::shared_ptr<Record>> records;
};

using MutexTable = PlainTable<std::mutex, std::lock_guard<std::mutex>>;
using SharedMutexTable = PlainTable<std::shared_mutex, std::shared_lock<std::shared_mutex>>;

// Registers and removes a product of its own, over and over, while it lives.
template <class Table>
class Writer {
public:
    explicit Writer(Table& table)
        : thread([this, &table] {
              const std::wstring id = L"WRITTEN1000";
              while (!mustEnd) {
                  table.Set(id);
                  table.Remove(id);
              }
          }) {}
    ~Writer() {
        mustEnd = true;
        thread.join();
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

private:
    std::atomic<bool> mustEnd = false;
    std::thread thread;
};

template <class Table>
Contender Way(const char* name, const std::vector<std::wstring>& ids, size_t threads, bool hasWriter) {
    const auto table = std::make_shared<Table>();
    for (const std::wstring& id : ids) {
        table->Set(id);
    }
    return {name, [=](size_t count) {
                const auto writer = hasWriter ? std::make_unique<Writer<Table>>(*table) : nullptr;
                return SecondsOnThreads(threads, count, [&](size_t thread, size_t mine) {
                    // The threads ask for different products as far as there are any.
                    size_t next = thread * 7919 % ids.size();
                    int32_t answers = 0;
                    for (size_t i = 0; i < mine; ++i) {
                        answers += table->Call(ids[next]);
                        next = next + 1 < ids.size() ? next + 1 : 0;
                    }
                    if (answers != static_cast<int32_t>(mine)) {
                        throw std::runtime_error("a product was not found");
                    }
                });
            }};
}

// What every callback of the agent's passes, and every call of a module: there and back.
void MeasureGate(Session& session) {
    const auto gate = std::make_shared<CallGate>();
    const auto mutex = std::make_shared<std::mutex>();
    const auto enter = [=](size_t count) {
        return SecondsOf([&] {
            for (size_t i = 0; i < count; ++i) {
                const CallGate::Call call(*gate);
                if (!call) {
                    throw std::runtime_error("the gate is closed");
                }
            }
        });
    };
    const auto lock = [=](size_t count) {
        return SecondsOf([&] {
            for (size_t i = 0; i < count; ++i) {
                const std::lock_guard guard(*mutex);
            }
        });
    };
    session.Race({"look-up", "a gate, entered and left", 0, 1, {{"ours", enter}, {"mutex", lock}}, std::nullopt});
}

}  // namespace

void MeasureLookUps(Session& session) {
    MeasureGate(session);
    std::vector<std::wstring> ids;
    const auto race = [&](size_t products, size_t threads, bool hasWriter) {
        ids.clear();
        for (size_t i = 0; i < products; ++i) {
            ids.push_back(L"PRODUCT" + std::to_wstring(1000 + i));
        }
        session.Race(
            {"look-up",
             std::to_string(products) + (products == 1 ? " product, " : " products, ") + std::to_string(threads) +
                 (threads == 1 ? " thread" : " threads") + (hasWriter ? ", a writer" : ""),
             threads == 1 && !hasWriter ? static_cast<double>(products) : 0,
             // All threads together do so many in the time that is measured.
             static_cast<double>(threads),
             {Way<OurTable>("ours", ids, threads, hasWriter), Way<MutexTable>("map, mutex", ids, threads, hasWriter),
              Way<SharedMutexTable>("map, shared mutex", ids, threads, hasWriter)},
             std::nullopt});
    };
    for (const size_t products : {1U, 10U, 100U, 1000U, 10000U}) {
        race(products, 1, false);
    }
    for (const size_t threads : {2U, 4U, 8U}) {
        race(1, threads, false);
        race(10000, threads, false);
    }
    for (const size_t threads : {1U, 8U}) {
        race(10000, threads, true);
    }
}

}  // namespace bench
