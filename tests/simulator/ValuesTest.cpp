// Values made from JSON, texts in both forms, buffers and loggers.
#include "simulator/SimulatorTest.h"

namespace {

class Values : public SimulatorTest {
protected:
    // The wide text of a narrow one, and the other way round, as the agent converts them.
    std::wstring Widened(const std::string& narrow) const {
        ny_variant_t* variant = nullptr;
        ny_wbuffer_t* buffer = nullptr;
        const wchar_t* text = nullptr;
        size_t length = 0;
        EXPECT_EQ(Call<&ny_variant_create_from_string>(narrow.data(), narrow.size(), &variant), NY_OK);
        EXPECT_EQ(Call<&ny_variant_get_wstring_buffer>(variant, &buffer), NY_OK);
        EXPECT_EQ(Call<&ny_wbuffer_get_string>(buffer, &text, &length), NY_OK);
        EXPECT_EQ(text[length], L'\0');
        const std::wstring wide(text, length);
        EXPECT_EQ(Call<&ny_wbuffer_release>(buffer), NY_OK);
        EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
        return wide;
    }

    std::string Narrowed(const std::wstring& wide) const {
        ny_variant_t* variant = nullptr;
        ny_buffer_t* buffer = nullptr;
        const char* text = nullptr;
        size_t length = 0;
        EXPECT_EQ(Call<&ny_variant_create_from_wstring>(wide.data(), wide.size(), &variant), NY_OK);
        EXPECT_EQ(Call<&ny_variant_get_string_buffer>(variant, &buffer), NY_OK);
        EXPECT_EQ(Call<&ny_buffer_get_string>(buffer, &text, &length), NY_OK);
        EXPECT_EQ(text[length], '\0');
        const std::string narrow(text, length);
        EXPECT_EQ(Call<&ny_buffer_release>(buffer), NY_OK);
        EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
        return narrow;
    }

    // The text of a table's value.
    std::string ValueOf(ny_table_t* table, const wchar_t* key) const {
        ny_variant_t* value = nullptr;
        if (Call<&ny_table_get_wvalue>(table, key, &value) != NY_OK) {
            return "(none)";
        }
        const std::string text = TextOf(value);
        EXPECT_EQ(Call<&ny_variant_release>(value), NY_OK);
        return text;
    }

    Lines KeysOf(ny_table_t* table) const {
        Lines keys;
        ny_array_t* array = nullptr;
        size_t size = 0;
        EXPECT_EQ(Call<&ny_table_get_keys>(table, &array), NY_OK);
        EXPECT_EQ(Call<&ny_array_size>(array, &size), NY_OK);
        for (size_t i = 0; i < size; ++i) {
            ny_variant_t* key = nullptr;
            EXPECT_EQ(Call<&ny_array_get_element_at>(array, i, &key), NY_OK);
            keys.push_back(TextOf(key));
            EXPECT_EQ(Call<&ny_variant_release>(key), NY_OK);
        }
        EXPECT_EQ(Call<&ny_array_release>(array), NY_OK);
        return keys;
    }
};

TEST_F(Values, OfJsonTextsAndScalarsAreTexts) {
    const std::pair<const char*, std::string> cases[] = {
        {R"("text")", "text"},
        {R"("")", ""},
        {R"("a\u0000b")", std::string("a\0b", 3)},
        {R"("\u00FC")", "\xC3\xBC"},
        {"42", "42"},
        {"-1.5", "-1.5"},
        {"true", "true"},
        {"null", "null"},
    };
    for (const auto& [json, text] : cases) {
        ny_variant_t* const variant = FromJson(json);
        EXPECT_EQ(TextOf(variant), text) << json;
        EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
    }
}

TEST_F(Values, OfJsonObjectsAreTablesWithTheirKeysInOrder) {
    ny_variant_t* const variant =
        FromJson(R"({"zebra": "z", "ant": 1, "inner": {"key": "value"}, "list": [1, "two"]})");
    ny_table_t* table = nullptr;
    ASSERT_EQ(Call<&ny_variant_get_table>(variant, &table), NY_OK);
    EXPECT_EQ(TextOf(variant), "(no text)");
    EXPECT_EQ(KeysOf(table), (Lines{"zebra", "ant", "inner", "list"}));
    EXPECT_EQ(ValueOf(table, L"zebra"), "z");
    EXPECT_EQ(ValueOf(table, L"ant"), "1");
    EXPECT_EQ(ValueOf(table, L"list"), "(no text)");
    EXPECT_EQ(ValueOf(table, L"Zebra"), "(none)");
    ny_variant_t* inner = nullptr;
    ny_table_t* innerTable = nullptr;
    ASSERT_EQ(Call<&ny_table_get_wvalue>(table, L"inner", &inner), NY_OK);
    ASSERT_EQ(Call<&ny_variant_get_table>(inner, &innerTable), NY_OK);
    EXPECT_EQ(ValueOf(innerTable, L"key"), "value");
    EXPECT_EQ(Call<&ny_table_release>(innerTable), NY_OK);
    EXPECT_EQ(Call<&ny_variant_release>(inner), NY_OK);
    EXPECT_EQ(Call<&ny_table_release>(table), NY_OK);
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
}

TEST_F(Values, OfJsonArraysAreNeitherTextsNorTables) {
    ny_variant_t* const variant = FromJson("[1, 2]");
    ny_table_t* table = nullptr;
    EXPECT_EQ(TextOf(variant), "(no text)");
    EXPECT_EQ(Call<&ny_variant_get_table>(variant, &table), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
}

TEST_F(Values, OfNoJsonAreRefused) {
    ny_variant_t* variant = nullptr;
    for (const char* json : {"", "{", "text", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(ny_sim_variant_from_json(json, &variant), NY_INVALID_ARGUMENT);
    }
    EXPECT_EQ(ny_sim_variant_from_json("1", nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(variant, nullptr);
}

TEST_F(Values, ElementsBeyondTheLastAreRefused) {
    ny_variant_t* const variant = FromJson(R"({"key": "value"})");
    ny_table_t* table = nullptr;
    ny_array_t* keys = nullptr;
    ny_variant_t* element = nullptr;
    ASSERT_EQ(Call<&ny_variant_get_table>(variant, &table), NY_OK);
    ASSERT_EQ(Call<&ny_table_get_keys>(table, &keys), NY_OK);
    EXPECT_EQ(Call<&ny_array_get_element_at>(keys, size_t{1}, &element), NY_INVALID_ARGUMENT);
    EXPECT_EQ(element, nullptr);
    EXPECT_EQ(Call<&ny_array_release>(keys), NY_OK);
    EXPECT_EQ(Call<&ny_table_release>(table), NY_OK);
    EXPECT_EQ(Call<&ny_variant_release>(variant), NY_OK);
}

TEST_F(Values, TextsAreConvertedBothWays) {
    const std::pair<std::string, std::wstring> cases[] = {
        {"", L""},
        {"text", L"text"},
        {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
        {"\xC3\xBC\xE2\x82\xAC", L"\u00FC\u20AC"},
        {"\xF0\x9F\x98\x80", L"\xD83D\xDE00"},
        {"\xF4\x8F\xBF\xBF", L"\xDBFF\xDFFF"},
    };
    for (const auto& [narrow, wide] : cases) {
        EXPECT_EQ(Widened(narrow), wide);
        EXPECT_EQ(Narrowed(wide), narrow);
    }
}

TEST_F(Values, InvalidTextsAreConvertedWithReplacements) {
    EXPECT_EQ(Widened("a\xFFz"), L"a\xFFFDz");
    EXPECT_EQ(Widened("\xC0\xAF"), L"\xFFFD\xFFFD");     // an overlong form
    EXPECT_EQ(Widened("\xE2\x82"), L"\xFFFD");           // cut short
    EXPECT_EQ(Widened("\xED\xA0\x80")[0], L'\xFFFD');    // a surrogate
    EXPECT_EQ(Narrowed(L"a\xD83Dz"), "a\xEF\xBF\xBDz");  // a lone high surrogate
    EXPECT_EQ(Narrowed(L"\xDE00"), "\xEF\xBF\xBD");      // a lone low one
    EXPECT_EQ(Narrowed(L"\xD83D"), "\xEF\xBF\xBD");
}

TEST_F(Values, BuffersHaveTheSizeThatIsAskedForAndAreZeroed) {
    ny_buffer_t* buffer = nullptr;
    ASSERT_EQ(Call<&ny_buffer_create>(&buffer, size_t{3}), NY_OK);
    const unsigned char* data = nullptr;
    size_t size = 0;
    ASSERT_EQ(Call<&ny_buffer_get_raw>(buffer, &data, &size), NY_OK);
    EXPECT_EQ(std::vector<unsigned char>(data, data + size), std::vector<unsigned char>(3));
    EXPECT_EQ(Call<&ny_buffer_release>(buffer), NY_OK);
    EXPECT_EQ(Call<&ny_buffer_create>(&buffer, SIZE_MAX), NY_OUT_OF_MEMORY);
}

TEST_F(Values, LoggersKeepTheirLinesOfWhateverLength) {
    ny_logger_t* logger = nullptr;
    ASSERT_EQ(ny_sim_logger_create(&logger), NY_OK);
    const auto print = [&](const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        const int32_t result = Call<&ny_log_v>(logger, 5U, "module", nullptr, 7U, "Function", format, arguments);
        va_end(arguments);
        return result;
    };
    const std::string longText(5000, 'x');
    EXPECT_EQ(print("%d of %s", 1, "two"), NY_OK);
    EXPECT_EQ(print("%s", longText.c_str()), NY_OK);
    EXPECT_EQ(print(nullptr), NY_INVALID_ARGUMENT);
    const char* line = nullptr;
    ASSERT_EQ(ny_sim_logger_size(logger), 2U);
    EXPECT_EQ(ny_sim_logger_get(logger, 0, &line), NY_OK);
    EXPECT_STREQ(line, "5|module||7|Function|1 of two");
    EXPECT_EQ(ny_sim_logger_get(logger, 1, &line), NY_OK);
    EXPECT_EQ(line, "5|module||7|Function|" + longText);
    EXPECT_EQ(ny_sim_logger_get(logger, 2, &line), NY_INVALID_ARGUMENT);
    ny_sim_logger_release(logger);
}

}  // namespace
