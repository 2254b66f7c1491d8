// The run-time type information that the compiler writes for each class with virtual functions
// begins with a pointer to the table of this class. Compiled without type information itself.

class type_info {
public:
    type_info();
    virtual ~type_info();
};

type_info::type_info() {}
type_info::~type_info() {}
