// B3 on 100k register rows.
#include "B3Load.h"

int main(int argc, char** argv)
{
    return bench::runB3(argc, argv, 100000);
}
