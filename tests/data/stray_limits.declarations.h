// What declarations.awk must refuse: this file is read by it alone.
class StrayClient : public TreflectObject {
public:
    // The bounds, 1..5. The line of a comment that is taken for an operation's would be lost.
    // Its numbers are
    static constexpr int BOUND = 5;
    // Sets it: 1..5.
    virtual void set(long const& value) const;
};
