/* The stand-in host: its values as the library reads them, its answers, and its errors. */
#include "host/stand_in_host.h"

#include <gtest/gtest.h>

namespace mtranslate {

namespace {

using Texts = std::vector<std::string>;

TEST(HostValues, have_the_layout_that_the_library_reads) {
    ValueStore store;
    const HostValue equation = store.equation(store.name("AddTranslator"), store.boolean(false));
    const auto *words = reinterpret_cast<const HostValue *>(equation);
    EXPECT_EQ(*reinterpret_cast<const uint32_t *>(words) >> 26, 21u);
    EXPECT_EQ(*reinterpret_cast<const uint32_t *>(words[1]) >> 26, 8u);
    EXPECT_STREQ(text_of(words[1]), "AddTranslator");
    EXPECT_FALSE(to_boolean(words[2]));
    EXPECT_EQ(ValueStore::integer(-3) & 1, 1u);
}

TEST(HostValues, are_shown_in_messages) {
    ValueStore store;
    const HostValue list = store.list_of_strings({"a", ""});
    const struct {
        HostValue value;
        const char *text;
    } rows[] = {
        {0, "null"},
        {ValueStore::integer(-3), "-3"},
        {store.string("a.m"), "\"a.m\""},
        {store.name("x"), "x"},
        {store.boolean(true), "true"},
        {list, "[\"a\", \"\"]"},
        {store.sequence(2), "null, null"},
        {store.equation(store.name("Foo"), list), "Foo = [\"a\", \"\"]"},
    };
    for (const auto &row : rows) EXPECT_EQ(to_display(row.value), row.text);
}

TEST(StandInHost, answers_from_its_tables) {
    StandInHost host;
    host.translate_name("a", "alpha");
    host.translate_function("sin", "SIN");
    host.translate_function("max", [](const Texts &arguments) -> std::optional<std::string> {
        if (arguments.size() != 2) return std::nullopt;
        return "larger of " + arguments[0] + " and " + arguments[1];
    });
    host.translate_other_names([](std::string_view name) {
        return name == "b" ? std::optional<std::string>("beta") : std::nullopt;
    });
    host.translate_other_functions(
        [](std::string_view name, const Texts &arguments) -> std::optional<std::string> {
            if (name != "sin" && name != "cos") return std::nullopt;
            return "any " + std::string(name) + " of " + std::to_string(arguments.size());
        });
    const struct {
        std::string source, translation;
    } rows[] = {
        {"cos(1, 2)", "any cos of 2;\n"},
        {"a", "alpha;\n"},
        {"sin(1)", "SIN;\n"},
        {"max(a, b)", "larger of alpha and beta;\n"},
        {"max(b)", "max(beta);\n"},
    };
    for (const auto &row : rows) EXPECT_EQ(host.translate("command", row.source), row.translation);
    host.translate_name("a", "second");
    host.values().clear();
    EXPECT_EQ(host.translate("command", "a"), "second;\n");
}

TEST(StandInHost, records_what_it_is_asked) {
    StandInHost host;
    host.translate("command", "y = 1");
    EXPECT_EQ(host.take_calls(), Texts{});
    host.record_calls();
    host.translate("command", "y = f(a, 2)");
    EXPECT_EQ(host.take_calls(), (Texts{"TranslateName(y)", "TranslateName(f)", "TranslateName(a)",
                                        "TranslateFunction(f, a, 2)"}));
    EXPECT_EQ(host.take_calls(), Texts{});
}

TEST(StandInHost, raises_errors_with_the_value_in_the_message) {
    StandInHost host;
    ValueStore &values = host.values();
    const HostValue number = ValueStore::integer(7);
    const HostValue command = values.string("command");
    const struct {
        std::vector<HostValue> arguments;
        const char *message;
    } rows[] = {
        {{command}, "invalid input: at least two arguments expected"},
        {{number, command}, "invalid input: string expected for first argument, but got 7"},
        {{values.string("file"), values.string("no/such.m")}, "unable to open \"no/such.m\""},
        // a "%1" of the source itself stays
        {{command, values.string("x = = %1")}, "on line 1, syntax error\nx = = %1\n     ^\n"},
    };
    for (const auto &row : rows) {
        std::string seen;
        host.on_error([&seen](const std::string &message) { seen = message; });
        try {
            host.run(values.sequence(row.arguments));
            ADD_FAILURE() << "no error: " << row.message;
        } catch (const HostError &error) {
            EXPECT_STREQ(error.what(), row.message);
        }
        EXPECT_EQ(seen, row.message);
        EXPECT_EQ(host.translate("command", "x=1"), "x := 1;\n");
    }
}

TEST(StandInHost, can_return_from_errors_and_jump_out_of_the_run) {
    StandInHost host;
    host.leave_errors_by(ErrorExit::Return);
    const HostValue mixed[] = {ValueStore::integer(3), host.values().string("dir"), 0};
    const HostValue options[] = {host.values().list(mixed)};
    const std::string message = "invalid input: path must be a list of strings";
    EXPECT_EQ(host.translate("command", "x=1", options), "x := 1;\n");
    EXPECT_EQ(host.take_errors(), (Texts{message, message}));
    EXPECT_EQ(host.translate("Command", "x=1"), std::nullopt);
    EXPECT_EQ(host.take_errors(), Texts{});
    host.leave_errors_by(ErrorExit::Jump);
    EXPECT_EQ(host.translate("command", "x=1", options), std::nullopt);
    EXPECT_EQ(host.take_errors(), Texts{message});
    EXPECT_EQ(host.translate("command", "x=1"), "x := 1;\n");
}

}  // namespace

}  // namespace mtranslate
