#include "tool/judge/Steps.h"

#include "tool/judge/Trial.h"

namespace tool::judge {

namespace {

using OrderedJson = nlohmann::ordered_json;

std::string TaskOf(const std::string& product, int number) {
    return "judge " + product + ' ' + std::to_string(number);
}

bool HasService(const Profile& profile, const char* service) {
    for (const auto& [product, services] : profile.products) {
        if (services.count(service) != 0) {
            return true;
        }
    }
    return false;
}

// The requests of a service other than the one that Request makes.
Steps OtherRequests(const std::string& service, const std::string& product) {
    Steps steps;
    if (service == "tasks") {
        for (const char* const verb : {"ask task", "stop task", "remove task"}) {
            steps.Do(verb).With("task", TaskOf(product, 0)).With("answer", nullptr);
        }
    } else if (service == "updates") {
        steps.Do("update").With("product", product).With("answer", nullptr).With("result", nullptr);
        steps.Do("set value")
            .With("product", product)
            .With("name", "Judge")
            .With("value", "1")
            .With("answer", nullptr)
            .With("result", nullptr);
    }
    return steps;
}

}  // namespace

Steps& Steps::Do(const char* verb) {
    all.push_back({{"do", verb}});
    return *this;
}

Steps& Steps::operator+=(const Steps& others) {
    for (const OrderedJson& step : others.all) {
        all.push_back(step);
    }
    return *this;
}

OrderedJson MakeStory(const std::string& name, Steps steps) {
    constexpr int within = 5000;
    return {{"name", name}, {"within", within}, {"steps", std::move(steps.all)}};
}

Steps Prepare(const Profile& profile) {
    OrderedJson policies = OrderedJson::array();
    OrderedJson tasks = OrderedJson::array();
    constexpr int tasksOfProduct = 8;
    for (const auto& [product, services] : profile.products) {
        policies.push_back(
            {{"softwareId", product},
             {"feature", "JUDGE_1000"},
             {"category", "General"},
             {"type", "General"},
             {"name", "The judge's"},
             {"sections", OrderedJson::array(
                              {OrderedJson{{"name", "General"}, {"settings", {{"Enabled", "1"}, {"Level", "7"}}}}})}});
        for (int i = 0; i < tasksOfProduct; ++i) {
            tasks.push_back({{"id", TaskOf(product, i)},
                             {"product", product},
                             {"name", "The judge's"},
                             {"settings", {{"General", {{"Enabled", "1"}}}}}});
        }
    }
    Steps steps;
    if (HasService(profile, "policies")) {
        steps.Do("set policies").With("policies", policies);
    }
    if (HasService(profile, "tasks")) {
        steps.Do("set tasks").With("tasks", tasks);
    }
    return steps;
}

Steps Request(const std::string& service, const std::string& product, const std::string& name, Answers answers,
              int task) {
    Steps steps;
    if (service == "properties") {
        steps.Do("ask").With("product", product);
        if (answers == Answers::Any) {
            steps.With("count", nullptr);
        }
    } else if (service == "policies") {
        steps.Do("notify").With("product", product);
    } else if (service == "tasks") {
        steps.Do("start task").With("task", TaskOf(product, task));
    } else {
        steps.Do("get value").With("product", product).With("name", "Version").With("result", nullptr);
    }
    if (answers == Answers::Any) {
        steps.With("answer", nullptr);
    }
    return std::move(steps.With("as", name));
}

Steps RequestAll(const Profile& profile) {
    Steps steps;
    for (const auto& [product, services] : profile.products) {
        for (const std::string& service : services) {
            const std::string name = service + ' ' + product;
            steps += Request(service, product, name, Answers::Any);
            steps.Do("await").With("request", name);
            steps += OtherRequests(service, product);
        }
    }
    return steps;
}

Steps UseAll(const Profile& profile) {
    Steps steps = Prepare(profile);
    for (const auto& [product, services] : profile.products) {
        for (const std::string& service : services) {
            if (service == "properties") {
                steps.Do("ask").With("product", product);
                steps.Do("ask").With("product", product);
            } else if (service == "policies") {
                steps.Do("notify").With("product", product);
                steps.Do("notify").With("product", product);
            } else if (service == "tasks") {
                steps.Do("run task").With("task", TaskOf(product, 0)).With("end", "any");
                steps.Do("ask task").With("task", TaskOf(product, 0));
                steps.Do("stop task").With("task", TaskOf(product, 0));
                steps.Do("remove task").With("task", TaskOf(product, 0));
            } else {
                steps.Do("update").With("product", product).With("result", nullptr);
                steps.Do("get value").With("product", product).With("name", "Version").With("result", nullptr);
                steps.Do("set value")
                    .With("product", product)
                    .With("name", "Judge")
                    .With("value", "1")
                    .With("result", nullptr);
            }
        }
    }
    return steps;
}

}  // namespace tool::judge
