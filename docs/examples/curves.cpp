// A transfer curve with one more knot, as a table for an image and as text for a script.

#include <KxUI/curves/Curve.h>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <vector>

using namespace Kestrel::UI;

int main() {
    Curve curve; // from (0, 0) to (1, 1), with room for eight knots
    curve.insertKnotAt(1);
    curve.setKnot(1, {0.25F, 0.4F});

    std::vector<float> table(1024);
    curve.buildLUT(1024, table.data());
    std::printf("%.3f at the middle\n", double(curve.valueAt(0.5F)));

    std::ostringstream text;
    text.precision(9); // reads back as the same floats
    text << curve;
    std::cout << text.str() << '\n';

    std::istringstream saved(text.str());
    Curve again;
    saved >> again;
    return again == curve && table.front() == curve.valueAt(0) ? 0 : 1;
}
