#include "sim/zoning/Catalog.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

struct Tree {
    std::string name;
    int height = 0;
};

std::vector<std::string> namesIn(const sim::Catalog<Tree> &trees) {
    std::vector<std::string> names;
    for (const Tree &tree : trees)
        names.push_back(tree.name);
    return names;
}

} // namespace

TEST(Catalog, KeepsThingsInTheOrderInWhichTheyCame) {
    sim::Catalog<Tree> trees;
    EXPECT_TRUE(trees.empty());
    for (const char *name : {"oak", "ash", "elm"})
        EXPECT_TRUE(trees.add({name, 1}));
    EXPECT_EQ(namesIn(trees), (std::vector<std::string>{"oak", "ash", "elm"}));
    EXPECT_EQ(trees.size(), 3U);
    EXPECT_FALSE(trees.empty());
}

TEST(Catalog, HasOneThingOfAKeyTheFirst) {
    sim::Catalog<Tree> trees;
    EXPECT_TRUE(trees.add({"oak", 1}));
    EXPECT_FALSE(trees.add({"oak", 2}));
    EXPECT_EQ(trees.size(), 1U);
    EXPECT_EQ(trees.find("oak")->height, 1);
}

TEST(Catalog, FindsThingsToReadAndToChange) {
    sim::Catalog<Tree> trees;
    EXPECT_EQ(trees.find("oak"), nullptr);
    for (int i = 0; i < 1000; ++i)
        trees.add({"tree" + std::to_string(i), i});
    trees.find("tree500")->height = -1;
    const sim::Catalog<Tree> copy = trees;
    EXPECT_EQ(copy.find("tree500")->height, -1);
    EXPECT_EQ(copy.find("tree999")->height, 999);
    EXPECT_EQ(copy.find("tree1000"), nullptr);
    EXPECT_EQ(copy.find(""), nullptr);
}

TEST(Catalog, OfTextsTheyAreTheirOwnKeys) {
    sim::Catalog<std::string> names;
    EXPECT_TRUE(names.add("oak"));
    EXPECT_FALSE(names.add("oak"));
    EXPECT_EQ(*names.find("oak"), "oak");
}
