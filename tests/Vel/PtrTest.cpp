#include "platform/Vel/Ptr.h"

#include <string>
#include <type_traits>
#include <unordered_set>
#include <utility>

#include <gtest/gtest.h>

#include "platform/Vel/AllocTrack.h"

namespace VelTest {
namespace {

class Animal : public Vel::PtrInterface {};

class Dog : public Animal, public Vel::AllocTracked<Dog> {
public:
    Vel::Ptr<Dog> next;
};

class Cat : public Animal, public Vel::AllocTracked<Cat> {};

std::uint64_t liveDogs() { return Dog::velAllocTrackTypeInfo_->live(); }

static_assert(std::is_convertible_v<Vel::Ptr<Dog>, Vel::Ptr<Animal>>);
static_assert(std::is_convertible_v<Vel::Ptr<Dog>, Vel::Ptr<Animal const>>);
static_assert(!std::is_constructible_v<Vel::Ptr<Dog>, Vel::Ptr<Animal>>);
static_assert(!std::is_constructible_v<Vel::Ptr<Dog>, Vel::Ptr<Dog const>>);
static_assert(!std::is_convertible_v<Vel::Ptr<Dog>, bool>);
static_assert(std::is_nothrow_move_constructible_v<Vel::Ptr<Dog>>);
static_assert(sizeof(Vel::Ptr<Dog>) == sizeof(void *));

TEST(Ptr, IsNullUntilItIsGivenAnObject) {
    Vel::Ptr<Dog> const nothing;
    Vel::Ptr<Dog> const null = nullptr;
    Vel::Ptr<Dog> const nullObject = static_cast<Dog *>(nullptr);
    for (auto const & p : {nothing, null, nullObject}) {
        EXPECT_FALSE(p);
        EXPECT_EQ(p.get(), nullptr);
        EXPECT_TRUE(p == nullptr);
        EXPECT_TRUE(nullptr == p);
    }
}

TEST(Ptr, NullIsCopiedMovedAndAssigned) {
    Vel::Ptr<Dog> dog = new Dog;
    Vel::Ptr<Dog> null;
    Vel::Ptr<Dog> copy = null;
    Vel::Ptr<Animal> moved = std::move(copy);
    moved = null;
    dog = null;
    EXPECT_EQ(liveDogs(), 0U);
    null = nullptr;
    EXPECT_EQ(moved, null);
}

TEST(Ptr, DestroysTheObjectWithTheLastReference) {
    Vel::Ptr<Dog> first = new Dog;
    Vel::Ptr<Dog> second = first;
    first = nullptr;
    EXPECT_EQ(liveDogs(), 1U);
    second = nullptr;
    EXPECT_EQ(liveDogs(), 0U);
}

TEST(Ptr, MovingChangesNoCount) {
    Vel::Ptr<Dog> first = new Dog;
    Vel::Ptr<Dog> second = std::move(first);
    EXPECT_EQ(second->references(), 1U);
    EXPECT_FALSE(first);
    Vel::Ptr<Animal const> third = std::move(second);
    EXPECT_EQ(third->references(), 1U);
    EXPECT_FALSE(second);
    Vel::Ptr<Animal const> fourth;
    fourth = std::move(third);
    EXPECT_EQ(fourth->references(), 1U);
    EXPECT_FALSE(third);
}

TEST(Ptr, AssigningTheHeldObjectKeepsTheCount) {
    Vel::Ptr<Dog> dog = new Dog;
    Vel::Ptr<Dog> const other = dog;
    dog = dog.get();
    EXPECT_EQ(dog->references(), 2U);
    dog = other;
    EXPECT_EQ(dog->references(), 2U);
    auto & same = dog;
    dog = same;
    EXPECT_EQ(dog->references(), 2U);
}

TEST(Ptr, AssigningTheOnlyReferenceToItselfKeepsTheObject) {
    Vel::Ptr<Dog> dog = new Dog;
    auto & same = dog;
    dog = same;
    ASSERT_TRUE(dog);
    dog = dog.get();
    ASSERT_TRUE(dog);
    dog = std::move(same);
    ASSERT_TRUE(dog);
    EXPECT_EQ(dog->references(), 1U);
}

TEST(Ptr, MovingFromAnotherReferenceToTheHeldObjectDropsThatOne) {
    Vel::Ptr<Dog> dog = new Dog;
    Vel::Ptr<Dog> other = dog;
    dog = std::move(other);
    EXPECT_EQ(dog->references(), 1U);
    EXPECT_FALSE(other);
}

TEST(Ptr, StepsAlongAListThatItOwns) {
    Vel::Ptr<Dog> p = new Dog;
    p->next = new Dog;
    p->next->next = new Dog;
    EXPECT_EQ(liveDogs(), 3U);
    p = p->next;
    EXPECT_EQ(liveDogs(), 2U);
    EXPECT_EQ(p->references(), 1U);
    p = std::move(p->next);
    EXPECT_EQ(liveDogs(), 1U);
    EXPECT_EQ(p->references(), 1U);
    p = p->next.get();
    EXPECT_EQ(liveDogs(), 0U);
    EXPECT_FALSE(p);
}

TEST(Ptr, MayStandInTheObjectThatItLetsGo) {
    Vel::Ptr<Dog> dog = new Dog;
    dog->next = dog;  // The assignment below is to a field of the object that it destroys.
    Dog * const raw = dog.get();
    dog = nullptr;
    EXPECT_EQ(liveDogs(), 1U);
    raw->next = nullptr;
    EXPECT_EQ(liveDogs(), 0U);
}

// Sees what a Ptr holds at the moment when it lets this object go.
class Looker final : public Vel::PtrInterface {
public:
    explicit Looker(Vel::Ptr<Vel::PtrInterface> const & holder) : holder_(holder) {}
    ~Looker() override { seen = holder_.get(); }

    static inline Vel::PtrInterface const * seen = nullptr;

private:
    Vel::Ptr<Vel::PtrInterface> const & holder_;
};

TEST(Ptr, HoldsTheNewObjectWhenTheOldOneIsDestroyed) {
    Vel::Ptr<Dog> const dog = new Dog;
    Vel::Ptr<Vel::PtrInterface> holder;
    holder = new Looker(holder);
    holder = dog;
    EXPECT_EQ(Looker::seen, dog.get());
    holder = new Looker(holder);
    holder = static_cast<Vel::PtrInterface *>(dog.get());
    EXPECT_EQ(Looker::seen, dog.get());
    holder = new Looker(holder);
    holder = nullptr;
    EXPECT_EQ(Looker::seen, nullptr);
}

TEST(Ptr, GivesItsReferenceAwayAndTakesOneOver) {
    Vel::Ptr<Dog> dog = new Dog;
    Dog * const raw = dog.release();
    EXPECT_FALSE(dog);
    EXPECT_EQ(raw->references(), 1U);
    Vel::Ptr<Dog> const adopted = Vel::Ptr<Dog>::adopted(raw);
    EXPECT_EQ(adopted->references(), 1U);
}

TEST(Ptr, ComparesByIdentity) {
    Vel::Ptr<Dog> const dog = new Dog;
    Vel::Ptr<Dog> const other = new Dog;
    Vel::Ptr<Animal const> const animal = dog;
    EXPECT_TRUE(dog == animal);
    EXPECT_TRUE(animal == dog);
    EXPECT_TRUE(dog == dog.get());
    EXPECT_TRUE(dog.get() == animal);
    EXPECT_FALSE(dog == other);
    EXPECT_TRUE(dog != other);
    EXPECT_TRUE(dog != other.get());
    EXPECT_TRUE(dog != nullptr);
}

TEST(Ptr, HashesByIdentity) {
    Vel::Ptr<Dog> const dog = new Dog;
    Vel::Ptr<Dog> const other = new Dog;
    std::unordered_set<Vel::Ptr<Dog>> dogs{dog, other, dog, nullptr};
    EXPECT_EQ(dogs.size(), 3U);
    EXPECT_EQ(dogs.count(other), 1U);
}

TEST(Ptr, CastsDownWithACheck) {
    Vel::Ptr<Animal> const animal = new Dog;
    EXPECT_EQ(Vel::dynamicPtrCast<Dog>(animal), animal);
    EXPECT_EQ(animal->references(), 1U);
    EXPECT_EQ(Vel::dynamicPtrCast<Cat>(animal), nullptr);
    EXPECT_EQ(Vel::dynamicPtrCast<Dog>(Vel::Ptr<Animal>()), nullptr);
    Vel::Ptr<Animal const> const constant = animal;
    Vel::Ptr<Dog const> const dog = Vel::dynamicPtrCast<Dog const>(constant);
    EXPECT_EQ(dog, animal);
    EXPECT_EQ(animal->references(), 3U);
}

TEST(Ptr, ReadsAsAPointer) {
    Vel::Ptr<Dog> const dog = new Dog;
    EXPECT_EQ(&*dog, dog.get());
    dog->next = new Dog;
    EXPECT_EQ((*dog).next, dog->next);
}

}  // namespace
}  // namespace VelTest
