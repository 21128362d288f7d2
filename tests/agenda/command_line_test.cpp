// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/command_line.h"

#include <gtest/gtest.h>

namespace {

std::string Wrong(const std::vector<std::string>& arguments) {
    CommandLine line;
    return ReadCommandLine(arguments, line);
}

TEST(CommandLine, ReadsCommandsOptionsAndFiles) {
    CommandLine line;
    EXPECT_EQ(ReadCommandLine({"elenco", "--da", "1/12/2026", "--a=2026-12-31", "--json"}, line), "");
    EXPECT_TRUE(line.command == Command::kList && line.json);
    EXPECT_EQ(line.range.from, (Day{2026, 12, 1}));
    EXPECT_EQ(line.range.to, (Day{2026, 12, 31}));
    EXPECT_EQ(ReadCommandLine({"importa", "--prova", "a", "--giorno-intero", "8:30", "--", "--b", "-"}, line),
              "");
    EXPECT_TRUE(line.command == Command::kImport && line.trial && !line.json && !line.range.from);
    EXPECT_EQ(line.all_day_time, (std::pair{8, 30}));
    EXPECT_EQ(line.files, (std::vector<std::string>{"a", "--b", "-"}));
    EXPECT_EQ(ReadCommandLine({"esporta", "-"}, line), "");
    EXPECT_EQ(line.files, (std::vector<std::string>{"-"}));
    EXPECT_EQ(ReadCommandLine({"controlla"}, line), "");
}

TEST(CommandLine, SaysWhatIsWrong) {
    EXPECT_EQ(Wrong({}), "manca il comando");
    EXPECT_EQ(Wrong({"elenca"}), "non conosco il comando \"elenca\"");
    EXPECT_EQ(Wrong({"elenco", "x"}), "non so che fare di \"x\"");
    EXPECT_EQ(Wrong({"esporta", "a", "b"}), "non so che fare di \"b\"");
    EXPECT_EQ(Wrong({"importa"}), "manca il file da importare");
    EXPECT_EQ(Wrong({"importa", "--json", "a"}), "non conosco l'opzione \"--json\"");
    EXPECT_EQ(Wrong({"elenco", "--json=1"}), "l'opzione --json non vuole un valore");
    EXPECT_EQ(Wrong({"elenco", "--da"}), "l'opzione --da vuole un valore");
    EXPECT_EQ(Wrong({"elenco", "--da", "ieri"}), "l'opzione --da non puo' essere \"ieri\"");
    EXPECT_EQ(Wrong({"importa", "--giorno-intero", "25", "a"}),
              "l'opzione --giorno-intero non puo' essere \"25\"");
    EXPECT_EQ(Wrong({"elenco", "--da", "2/1/2026", "--a", "1/1/2026"}),
              "il giorno di --a viene prima di quello di --da");
}

}  // namespace
