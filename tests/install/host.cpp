/* The same host by the C++ face. */
#include <kxmaths5/print.hpp>

#include <iostream>

int main()
{
    const kxm::position place({10, 2, 0}, 0, kxm::radians(90), 0);
    const auto [there, back] = place.matrices(kxm::order::yxz);
    const kxm::point3 point(0, 0, 0.5f), out = there * point;
    if (out != kxm::point3(10.5f, 2, 0) || back * out != point) {
        std::cerr << out << " and back to " << back * out << '\n';
        return 1;
    }
#ifdef KX_STATIC
    std::cout << "static\n";
#else
    std::cout << "shared\n";
#endif
}
