// What the framework knows of a proxy class: its name, identifier, parent and operations.
#pragma once

#include <atomic>
#include <span>
#include <string>

// One operation as the framework sees it.
struct TreflectMetaOperation {
    char const* name;      // exactly the member function's name
    unsigned long index;   // within its interface
    unsigned long classId; // of the interface that declares it
};

// The meta object of one proxy class. It is built when the library is loaded, completed on first use and open to
// reading from then on.
class TreflectMetaObject {
public:
    struct MetaOpData {
        char const* name;
        unsigned long index;
    };
    struct MetaAttrData {
        char const* name;
        unsigned long index;
    };

    TreflectMetaObject(std::string const& name, unsigned long id);
    TreflectMetaObject(TreflectMetaObject const&) = delete;
    TreflectMetaObject& operator=(TreflectMetaObject const&) = delete;
    virtual ~TreflectMetaObject();

    // The proxy class's name, suffix included.
    virtual std::string const& name() const;
    // Registers parent and tables with this object; does nothing the second time.
    virtual void completeMetaInformation() = 0;

    unsigned long id() const { return id_; }
    // Null for a root. Complete objects only.
    TreflectMetaObject* parent() const { return parent_; }
    // The class's own operations in index order, without inherited ones. Complete objects only.
    std::span<MetaOpData const> operations() const { return {operations_, operationCount_}; }
    std::span<MetaAttrData const> attributes() const { return {attributes_, attributeCount_}; }
    bool isComplete() const { return state_.load(std::memory_order_acquire) == State::complete; }

    // The operation of that name of this class or of its nearest parent that has one; index and declaring class
    // through `found`. False when there is none.
    bool findOperation(std::string const& name, TreflectMetaOperation& found);

    // The meta object of that name, completed, or null.
    static TreflectMetaObject* find(std::string const& name);

protected:
    // One execution of completeMetaInformation(): holds off other threads that want the same object complete.
    class Completion {
    public:
        explicit Completion(TreflectMetaObject& object);
        Completion(Completion const&) = delete;
        Completion& operator=(Completion const&) = delete;
        ~Completion();
        // Whether this execution is the one that does the work.
        bool isFirst() const { return first_; }

    private:
        TreflectMetaObject& object_;
        bool first_ = false;
    };

    void registerParent(TreflectMetaObject* parent) { parent_ = parent; }
    void completeMetaInformationHelper(MetaOpData const* operations, unsigned long operationCount,
                                       MetaAttrData const* attributes, unsigned long attributeCount);

private:
    enum class State : unsigned char { untouched, started, complete };

    std::string const name_;
    unsigned long const id_;
    TreflectMetaObject* parent_ = nullptr;
    MetaOpData const* operations_ = nullptr;
    unsigned long operationCount_ = 0;
    MetaAttrData const* attributes_ = nullptr;
    unsigned long attributeCount_ = 0;
    std::atomic<State> state_ = State::untouched;
    TreflectMetaObject* next_ = nullptr; // all meta objects of the process
};
