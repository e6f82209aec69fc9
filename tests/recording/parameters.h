#pragma once

// What a function is made of that stands for a row of entrypoints.h, by its number of parameters:
// what it takes, the names of that, and each of them given to its printer.

#define PARAMETERS_0()
#define PARAMETERS_1(t1, p1) t1 a1
#define PARAMETERS_2(t1, p1, ...) t1 a1, REST_2(__VA_ARGS__)
#define PARAMETERS_3(t1, p1, ...) t1 a1, REST_3(__VA_ARGS__)
#define PARAMETERS_4(t1, p1, ...) t1 a1, REST_4(__VA_ARGS__)
#define PARAMETERS_5(t1, p1, ...) t1 a1, REST_5(__VA_ARGS__)
#define PARAMETERS_6(t1, p1, ...) t1 a1, REST_6(__VA_ARGS__)
#define PARAMETERS_9(t1, p1, ...) t1 a1, REST_9(__VA_ARGS__)
#define REST_2(t2, p2) t2 a2
#define REST_3(t2, p2, t3, p3) t2 a2, t3 a3
#define REST_4(t2, p2, t3, p3, t4, p4) t2 a2, t3 a3, t4 a4
#define REST_5(t2, p2, t3, p3, t4, p4, t5, p5) t2 a2, t3 a3, t4 a4, t5 a5
#define REST_6(t2, p2, t3, p3, t4, p4, t5, p5, t6, p6) t2 a2, t3 a3, t4 a4, t5 a5, t6 a6
#define REST_9(t2, p2, t3, p3, t4, p4, t5, p5, t6, p6, t7, p7, t8, p8, t9, p9)                     \
    t2 a2, t3 a3, t4 a4, t5 a5, t6 a6, t7 a7, t8 a8, t9 a9

#define NAMES_0
#define NAMES_1 a1
#define NAMES_2 a1, a2
#define NAMES_3 a1, a2, a3
#define NAMES_4 a1, a2, a3, a4
#define NAMES_5 a1, a2, a3, a4, a5
#define NAMES_6 a1, a2, a3, a4, a5, a6
#define NAMES_9 a1, a2, a3, a4, a5, a6, a7, a8, a9

#define TEXTS_0()
#define TEXTS_1(t1, p1) p1(a1)
#define TEXTS_2(t1, p1, t2, p2) p1(a1), p2(a2)
#define TEXTS_3(t1, p1, t2, p2, t3, p3) p1(a1), p2(a2), p3(a3)
#define TEXTS_4(t1, p1, t2, p2, t3, p3, t4, p4) p1(a1), p2(a2), p3(a3), p4(a4)
#define TEXTS_5(t1, p1, t2, p2, t3, p3, t4, p4, t5, p5) p1(a1), p2(a2), p3(a3), p4(a4), p5(a5)
#define TEXTS_6(t1, p1, t2, p2, t3, p3, t4, p4, t5, p5, t6, p6)                                    \
    p1(a1), p2(a2), p3(a3), p4(a4), p5(a5), p6(a6)
#define TEXTS_9(t1, p1, t2, p2, t3, p3, t4, p4, t5, p5, t6, p6, t7, p7, t8, p8, t9, p9)            \
    p1(a1), p2(a2), p3(a3), p4(a4), p5(a5), p6(a6), p7(a7), p8(a8), p9(a9)
