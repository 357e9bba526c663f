// The task objects that the simulated agent lends to callbacks, and their accessors.
#include <functional>

#include "simulator/SimulatorTest.h"
#include "support/AgentTasks.h"
#include "support/AnsweredCalls.h"

namespace {

using testing::ElementsAre;

class TaskObject : public SimulatedClientTest {
protected:
    void SetUp() override {
        SimulatedClientTest::SetUp();
        ASSERT_EQ(Call<&ny_scheduler_register_task_callbacks>(client, "PRODUCT1000", nullptr, &callbacks, this), NY_OK);
    }

    // Runs `body` in a callback for the one task, which is made of these further members.
    void WithTask(const std::string& members, const std::function<void(ny_task_t*)>& body) {
        SetTasks(R"([{"id": "task", "product": "PRODUCT1000")" + members + "}]");
        inside = body;
        EXPECT_EQ(AnswerOf("task"), NY_OK);
        EXPECT_EQ(ny_sim_lent_tasks(), 0U);
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_VARIANT), 0U);
    }

    // The text of a variant that is released here.
    std::string Take(ny_variant_t* variant) const {
        const std::string text = TextOf(variant);
        EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
        return text;
    }

    static int32_t Run(ny_client_t*, const char*, const char*, ny_task_t* task, void* data) {
        static_cast<TaskObject*>(data)->inside(task);
        return NY_OK;
    }

    const ny_task_callbacks_t callbacks = {&Run, &Run, &Run, &Run};
    std::function<void(ny_task_t*)> inside;
};

constexpr char settings[] = R"(, "name": "a \u00FC", "settings": {
    "first": {"text": "value", "number": 12, "nothing": null, "list": [1]},
    "empty": {},
    "flat": "no table"
})";

TEST_F(TaskObject, TellsItsIdAndItsName) {
    WithTask(settings, [](ny_task_t* task) {
        const char* text = nullptr;
        EXPECT_EQ(task->methods->get_id(task, &text), NY_OK);
        EXPECT_STREQ(text, "task");
        EXPECT_EQ(task->methods->get_name(task, &text), NY_OK);
        EXPECT_STREQ(text, "a \xC3\xBC");
        EXPECT_EQ(task->methods->get_id(task, nullptr), NY_INVALID_ARGUMENT);
    });
}

TEST_F(TaskObject, WithoutANameGivesNull) {
    WithTask("", [](ny_task_t* task) {
        const char* text = "unchanged";
        EXPECT_EQ(task->methods->get_name(task, &text), NY_OK);
        EXPECT_EQ(text, nullptr);
    });
}

TEST_F(TaskObject, GivesSettingsAsOwnedVariants) {
    WithTask(settings, [this](ny_task_t* task) {
        const auto get = [&](const char* section, const char* name) {
            ny_variant_t* variant = nullptr;
            const int32_t code = task->methods->get_setting(task, section, name, &variant);
            return code == NY_OK ? Take(variant) : "code " + std::to_string(code);
        };
        EXPECT_EQ(get("first", "text"), "value");
        EXPECT_EQ(get("first", "number"), "12");
        EXPECT_EQ(get("first", "nothing"), "null");
        EXPECT_EQ(get("first", "list"), "(no text)");
        EXPECT_EQ(get("first", "Text"), "code 1");
        EXPECT_EQ(get("third", "text"), "code 1");
        EXPECT_EQ(get("flat", "text"), "code 1");
        EXPECT_EQ(get(nullptr, "text"), "code 1");
        EXPECT_EQ(get("first", nullptr), "code 1");
        EXPECT_EQ(task->methods->get_setting(task, "first", "text", nullptr), NY_INVALID_ARGUMENT);
    });
}

TEST_F(TaskObject, GivesSectionsAndAllSettingsAsTables) {
    WithTask(settings, [this](ny_task_t* task) {
        const auto keysOf = [&](ny_variant_t* variant) {
            ny_table_t* table = nullptr;
            ny_array_t* keys = nullptr;
            size_t size = 0;
            EXPECT_EQ(Call<&ny_variant_get_table>(variant, &table), NY_OK);
            EXPECT_EQ(Call<&ny_table_get_keys>(table, &keys), NY_OK);
            EXPECT_EQ(Call<&ny_array_size>(keys, &size), NY_OK);
            EXPECT_EQ(Call<&ny_array_release>(keys), NY_OK);
            EXPECT_EQ(Call<&ny_table_release>(table), NY_OK);
            EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
            return size;
        };
        ny_variant_t* variant = nullptr;
        ASSERT_EQ(task->methods->get_section(task, "first", &variant), NY_OK);
        EXPECT_EQ(keysOf(variant), 4U);
        ASSERT_EQ(task->methods->get_section(task, "empty", &variant), NY_OK);
        EXPECT_EQ(keysOf(variant), 0U);
        EXPECT_EQ(task->methods->get_section(task, "third", &variant), NY_INVALID_ARGUMENT);
        ASSERT_EQ(task->methods->get_settings(task, &variant), NY_OK);
        EXPECT_EQ(keysOf(variant), 3U);
    });
}

TEST_F(TaskObject, BehavesAsTheTaskSays) {
    WithTask(R"(, "name": "name", "settings": {"s": {"n": "v"}},
                "accessors": {"get_id": "absent", "get_name": 77, "get_setting": "null", "get_section": "absent"})",
             [](ny_task_t* task) {
                 const char* text = "unchanged";
                 ny_variant_t* variant = reinterpret_cast<ny_variant_t*>(task);
                 EXPECT_EQ(task->methods->get_id, nullptr);
                 EXPECT_EQ(task->methods->get_section, nullptr);
                 EXPECT_EQ(task->methods->get_name(task, &text), 77);
                 EXPECT_STREQ(text, "unchanged");
                 EXPECT_EQ(task->methods->get_setting(task, "s", "n", &variant), NY_OK);
                 EXPECT_EQ(variant, nullptr);
                 EXPECT_NE(task->methods->get_settings, nullptr);
             });
}

TEST_F(TaskObject, HasItsAccessorsRecordedAndMadeToFail) {
    ASSERT_EQ(ny_sim_fail_call("ny_task.get_id", 2, 88, NY_SIM_ONCE), NY_OK);
    WithTask(settings, [](ny_task_t* task) {
        const char* text = nullptr;
        ny_sim_clear_calls();
        EXPECT_EQ(task->methods->get_id(task, &text), NY_OK);
        EXPECT_EQ(task->methods->get_id(task, &text), 88);
        EXPECT_EQ(task->methods->get_name(task, &text), NY_OK);
        EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_task.get_id 0", "ny_task.get_id 88", "ny_task.get_name 0"));
    });
    EXPECT_EQ(ny_sim_fail_call("ny_task.get_ip", 1, 88, NY_SIM_ONCE), NY_SIM_NOT_SIMULATED);
}

TEST_F(TaskObject, IsNotLentOutsideOfItsCallback) {
    const ny_task_methods_t* methods = nullptr;
    ny_task_methods_t copy{};
    ny_task_t* kept = nullptr;
    WithTask(settings, [&](ny_task_t* task) {
        methods = task->methods;
        copy = *methods;
        kept = task;
        EXPECT_EQ(ny_sim_lent_tasks(), 1U);
    });
    const char* text = nullptr;
    EXPECT_EQ(copy.get_id(kept, &text), NY_INVALID_ARGUMENT);
    EXPECT_STREQ(ny_sim_last_misuse(), "ny_task.get_id: the task object is not lent");
    EXPECT_EQ(copy.get_id(nullptr, &text), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_misuse_count(), 1U);
    ny_sim_reset();
}

}  // namespace
