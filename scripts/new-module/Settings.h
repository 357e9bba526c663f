// What the agent's policies say.
#pragma once

#include <map>
#include <mutex>
#include <string>

// Any thread, several at once.
class Settings {
public:
    using Values = std::map<std::wstring, std::wstring, std::less<>>;

    // The values take the place of all that there are.
    void Replace(Values newValues);
    // Empty when there is none of that name.
    std::wstring Get(std::wstring_view name) const;

private:
    mutable std::mutex mutex;
    Values values;
};
