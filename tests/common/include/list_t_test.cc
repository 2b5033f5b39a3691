#include "common/include/list_t"

#include <csignal>
#include <memory>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>

#include "datacache/FabricCache.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An item that counts itself.
struct Item {
    explicit Item(int theNumber = 0) : number(theNumber) { ++alive; }
    ~Item() {
        --alive;
        gone.push_back(number);
    }
    Item(const Item &) = delete;
    Item &operator=(const Item &) = delete;

    int number;
    static int alive;
    static std::vector<int> gone; // the numbers of those that ended, in order
};

int Item::alive = 0;
std::vector<int> Item::gone;

using Node = Element<Item>;
using Items = List<Node>;

static_assert(std::has_virtual_destructor_v<Node>);
static_assert(!std::is_polymorphic_v<Items>);

/// The numbers of a list's items, first to last; walking back must give the same.
std::vector<int> numbers(const Items &list) {
    std::vector<int> forward;
    for (Node *node = list.get_first(); node != nullptr; node = node->get_next())
        forward.push_back(node->item()->number);
    std::vector<int> backward;
    for (Node *node = list.get_last(); node != nullptr; node = node->get_prev())
        backward.insert(backward.begin(), node->item()->number);
    EXPECT_EQ(forward, backward);
    EXPECT_EQ(forward.size(), list.size());
    return forward;
}

class ListTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(Item::alive, 0) << "items leaked"; }

    static Node *node(int number) { return new Node(new Item(number)); }
};

TEST_F(ListTest, ANewListIsEmpty) {
    const Items list;
    EXPECT_EQ(list.size(), 0U);
    EXPECT_TRUE(list.is_empty());
    EXPECT_EQ(list.get_first(), nullptr);
    EXPECT_EQ(list.get_last(), nullptr);
}

TEST_F(ListTest, AddLinksAtTheEnd) {
    Items list;
    Node *a = node(1);
    Node *b = node(2);
    list.add(a);
    list.add(b);
    EXPECT_THAT(numbers(list), ElementsAre(1, 2));
    EXPECT_EQ(list.get_first(), a);
    EXPECT_EQ(a->get_next(), b);
    EXPECT_EQ(b->get_next(), nullptr);
    EXPECT_EQ(a->get_prev(), nullptr);
    EXPECT_EQ(b->get_prev(), a);
    EXPECT_EQ(a->index(), 1U);
    EXPECT_EQ(b->index(), 2U);
    EXPECT_FALSE(list.is_empty());
}

TEST_F(ListTest, AddHeadLinksBeforeTheFirstAlsoWhenThereIsNone) {
    Items list;
    list.add_head(node(2));
    list.add_head(node(1));
    list.add(node(3));
    EXPECT_THAT(numbers(list), ElementsAre(1, 2, 3));
}

TEST_F(ListTest, InsertLinksNextToAnElement) {
    Items list;
    Node *middle = node(3);
    list.add(middle);
    list.insert_before(node(2), middle);
    list.insert_after(node(4), middle);
    list.insert_before(node(1), list.get_first());
    list.insert_after(node(5), list.get_last());
    EXPECT_THAT(numbers(list), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_EQ(middle->index(), 3U);
}

/// The ends of a list, which only the list itself knows.
class OpenList : public Items {
public:
    using Items::head;
    using Items::tail;
};

TEST_F(ListTest, LinkingBeyondAnEndMovesTheEnd) {
    const std::unique_ptr<Node> before(node(0));
    const std::unique_ptr<Node> after(node(2));
    OpenList list;
    list.add(node(1));
    list.insert_before(before.get(), list.head());
    list.insert_after(after.get(), list.tail());
    EXPECT_EQ(list.head(), before.get());
    EXPECT_EQ(list.tail(), after.get());
    EXPECT_EQ(list.size(), 3U);
    EXPECT_EQ(list.get_first()->item()->number, 1) << "what stands beyond the ends is on no walk";
    EXPECT_EQ(list.get_last()->item()->number, 1);
}

TEST_F(ListTest, RemoveUnlinksAndLeavesTheElementToTheCaller) {
    Items list;
    Node *a = node(1);
    Node *b = node(2);
    list.add(a);
    list.add(b);
    list.remove(a);
    EXPECT_THAT(numbers(list), ElementsAre(2));
    EXPECT_EQ(a->get_next(), nullptr);
    EXPECT_EQ(a->get_prev(), nullptr);
    EXPECT_EQ(Item::alive, 2);
    delete a;
    list.remove(b);
    EXPECT_TRUE(list.is_empty());
    delete b;
}

TEST_F(ListTest, RemovingWhatIsNotLinkedChangesNothing) {
    Items list;
    list.add(node(1));
    Node stray(new Item(2));
    list.remove(&stray);
    list.remove(static_cast<Node *>(nullptr));
    list.add(static_cast<Node *>(nullptr));
    EXPECT_THAT(numbers(list), ElementsAre(1));
}

TEST_F(ListTest, LinkingNextToWhatIsNotLinkedChangesNothing) {
    Items list;
    list.add(node(1));
    Node stray(new Item(2));
    Node element(new Item(3));
    for (Node *reference : {&stray, &element, static_cast<Node *>(nullptr)}) {
        list.insert_before(&element, reference);
        list.insert_after(&element, reference);
    }
    list.insert_before(nullptr, list.get_first());
    list.insert_after(nullptr, list.get_first());
    EXPECT_THAT(numbers(list), ElementsAre(1));
    EXPECT_EQ(element.get_next(), nullptr);
    EXPECT_EQ(element.get_prev(), nullptr);
    EXPECT_EQ(stray.get_next(), nullptr);
    EXPECT_EQ(stray.get_prev(), nullptr);
}

TEST_F(ListTest, LinkingWhatIsLinkedChangesNothing) {
    Items list;
    Items other;
    Node *element = node(1);
    list.add(element);
    list.add(node(2));
    other.add(node(3));
    list.add(element);
    list.add_head(list.get_last());
    other.add(element);
    other.insert_after(element, other.get_first());
    EXPECT_THAT(numbers(list), ElementsAre(1, 2));
    EXPECT_THAT(numbers(other), ElementsAre(3));
}

TEST_F(ListTest, AnElementIsFoundAndRemovedByItsNumber) {
    Items list;
    Node *a = node(1);
    Node *b = node(2);
    list.add(a);
    list.add(b);
    EXPECT_EQ(list.find(b->id()), b);
    EXPECT_EQ(list.remove(b->id()), b);
    EXPECT_EQ(list.find(b->id()), nullptr);
    EXPECT_EQ(list.remove(b->id()), nullptr);
    EXPECT_THAT(numbers(list), ElementsAre(1));
    delete b;
}

/// An item of one test's own, so that the counter of its elements starts afresh.
struct Repeated {};

TEST_F(ListTest, OfTwoElementsWithOneNumberTheFirstIsFound) {
    using Fresh = Element<Repeated>;
    List<Fresh> list;
    auto *first = new Fresh(nullptr);
    list.add(first);
    for (unsigned allocation = 2; allocation <= 65534; ++allocation)
        Fresh(nullptr, false);
    auto *second = new Fresh(nullptr);
    list.add(second);
    ASSERT_EQ(first->id(), second->id());
    EXPECT_EQ(list.find(first->id()), first);
    EXPECT_EQ(list.remove(first->id()), first);
    EXPECT_EQ(list.find(second->id()), second);
    EXPECT_EQ(list.size(), 1U);
    delete first;
}

TEST_F(ListTest, TheSentinelsAreNotFoundByTheirNumbers) {
    Items list;
    list.add(node(1));
    EXPECT_EQ(list.find(0), nullptr);
    EXPECT_EQ(list.find(1), nullptr);
    EXPECT_EQ(list.remove(static_cast<unsigned short>(0)), nullptr);
    EXPECT_EQ(list.remove(static_cast<unsigned short>(1)), nullptr);
    EXPECT_EQ(list.size(), 1U);
}

TEST_F(ListTest, TakeMovesAllElementsInOrder) {
    Items from;
    Items to;
    to.add(node(1));
    from.add(node(2));
    from.add(node(3));
    to.take(&from);
    EXPECT_THAT(numbers(to), ElementsAre(1, 2, 3));
    EXPECT_TRUE(from.is_empty());
    to.take(&from);
    to.take(nullptr);
    to.take(&to);
    EXPECT_THAT(numbers(to), ElementsAre(1, 2, 3));
}

TEST_F(ListTest, PurgeDestroysTheElementsAndTheItemsTheyOwn) {
    Items list;
    Item kept(7);
    list.add(node(1));
    list.add(new Node(&kept, false));
    list.purge_list(false);
    EXPECT_TRUE(list.is_empty());
    EXPECT_EQ(list.size(), 0U);
    EXPECT_EQ(Item::alive, 1);
}

TEST_F(ListTest, PurgeCanForceElementsToDeleteTheirItems) {
    Items list;
    list.add(new Node(new Item(1), false));
    list.purge_list(true);
    EXPECT_EQ(Item::alive, 0);
}

TEST_F(ListTest, PurgeGoesFromTheFirstToTheLast) {
    for (const bool deleteItems : {true, false}) {
        Items list;
        for (const int number : {3, 1, 2})
            list.add(node(number));
        Item::gone.clear();
        list.purge_list(deleteItems);
        EXPECT_THAT(Item::gone, ElementsAre(3, 1, 2)) << deleteItems;
    }
}

TEST_F(ListTest, TheDestructorPurges) {
    {
        Items list;
        list.add(node(1));
        list.add(node(2));
        EXPECT_EQ(Item::alive, 2);
    }
    EXPECT_EQ(Item::alive, 0);
}

TEST_F(ListTest, AnElementOwnsItsItemUnlessToldOtherwise) {
    Node element(new Item(1));
    EXPECT_TRUE(element.delete_item());
    element.item(new Item(2));
    EXPECT_EQ(Item::alive, 1) << "the old item is gone";
    EXPECT_EQ(element.item()->number, 2);

    Item outside(3);
    element.item(&outside);
    element.delete_item() = false;
    element.item(nullptr);
    EXPECT_EQ(Item::alive, 1);
}

TEST_F(ListTest, AllocMakesAnElementOnTheHeap) {
    const std::unique_ptr<Node> owner(Node::alloc(new Item(1), true));
    Item outside(2);
    const std::unique_ptr<Node> user(Node::alloc(&outside, false));
    EXPECT_TRUE(owner->delete_item());
    EXPECT_FALSE(user->delete_item());
    EXPECT_NE(owner->id(), user->id());
}

/// An item of this test's own, so that its counter starts afresh.
struct Counted {};

TEST_F(ListTest, NumbersBeginAtTwoAndComeAgainAfterTheLargest) {
    using Fresh = Element<Counted>;
    EXPECT_EQ(Fresh(nullptr, false).id(), 2U);
    for (unsigned allocation = 2; allocation < 65534; ++allocation)
        Fresh(nullptr, false);
    EXPECT_EQ(Fresh(nullptr, false).id(), 65535U) << "the 65,534th";
    EXPECT_EQ(Fresh(nullptr, false).id(), 2U);
    EXPECT_EQ(Fresh(nullptr, false).id(), 3U);
}

TEST_F(ListTest, SentinelsTakeNoNumber) {
    struct Other {};
    using Fresh = Element<Other>;
    Fresh sentinel(1);
    EXPECT_EQ(sentinel.id(), 1U);
    EXPECT_EQ(sentinel.item(), nullptr);
    EXPECT_TRUE(sentinel.delete_item());
    EXPECT_EQ(sentinel.get_next(), nullptr);
    EXPECT_EQ(sentinel.get_prev(), nullptr);
    EXPECT_EQ(Fresh(nullptr, false).id(), 2U);
}

class ListDeathTest : public ListTest {};

TEST_F(ListDeathTest, DestroyingALinkedElementEndsTheProcess) {
    const auto destroy = [] {
        List<Element<SwitchCache>> list;
        auto *element = new Element<SwitchCache>(new SwitchCache);
        list.add(element);
        delete element;
    };
    EXPECT_EXIT(destroy(), testing::KilledBySignal(SIGABRT),
                "common/include/list_t:[0-9]+: Element<Item>::~Element\\(\\) \\[with Item = SwitchCache\\]: "
                "Assertion `0' failed\\.");
}

TEST_F(ListDeathTest, ARemovedElementMayBeDestroyed) {
    Items list;
    Node *element = node(1);
    list.add(element);
    list.remove(element);
    delete element;
    EXPECT_TRUE(list.is_empty());
}

} // namespace
