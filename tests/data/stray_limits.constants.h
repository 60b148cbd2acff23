// What constants.awk must refuse: this file is read by it alone.
class StrayClient : public TreflectObject {
public:
    struct Fine {
        long value;
    };
    static constexpr int BOUND = 5; // 1..5
};
