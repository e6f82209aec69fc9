#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace Vell {

/// What the six vector types share, written once.
///
/// T is the vector itself, S its scalar (float or std::int32_t), N its number of components; T has
/// the components and operator[]. It adds no data, so a vector stays N packed scalars that OpenGL
/// can read as an array.
///
/// Float sums and products are formed in double and stored back to float: for one sum, product or
/// quotient that is what float arithmetic itself gives, while the members that add up products
/// (DotProduct, Length, CrossProduct) keep more than float would. The free functions Dot, Cross,
/// Length, Normalized and Lerp are the cheap forms: in float, in the order written. Integer sums
/// and products wrap round on overflow; integer quotients are truncated toward zero.
template <class T, class S, int N>
struct VectorOperations {
    /// The same component as operator[]: 0 is x, 1 is y, and so on; any index outside the range,
    /// negative ones included, is the last component.
    constexpr S& operator()(int i) { return Self()[i]; }
    constexpr const S& operator()(int i) const { return Self()[i]; }

    /// Exact comparison, no tolerance.
    friend constexpr bool operator==(const T& a, const T& b) {
        for (int i = 0; i < N; ++i)
            if (a[i] != b[i])
                return false;
        return true;
    }

    /// Sum and difference component by component.
    constexpr T& operator+=(const T& other);
    constexpr T& operator-=(const T& other);
    constexpr T operator+(const T& other) const { return T(Self()) += other; }
    constexpr T operator-(const T& other) const { return T(Self()) -= other; }

    /// Every component with its sign changed; the least integer wraps to itself.
    friend constexpr T operator-(const T& v) { return v * S{-1}; }

    /// Every component times `scale`.
    constexpr T& operator*=(S scale);
    constexpr T operator*(S scale) const { return T(Self()) *= scale; }
    friend constexpr T operator*(S scale, const T& v) { return v * scale; }
    /// Product component by component; for the dot product see DotProduct() of the wider types.
    constexpr T operator*(const T& other) const;

    /// Divides in place; a divisor of 0 leaves the vector as it is.
    constexpr T& operator/=(S divisor);
    /// The quotient, or the zero vector when the divisor is 0.
    constexpr T operator/(S divisor) const { return divisor == S{} ? T() : T(Self()) /= divisor; }
    /// Quotient component by component, or the zero vector when x, y or z of the divisor is 0.
    /// The fourth component is divided without that check, which is intended: a float w / 0 is
    /// infinite and an integer one divides by zero.
    constexpr T operator/(const T& divisor) const;

    /// Caps from above: every component greater than `limit` becomes `limit`.
    void Min(S limit);
    /// Raises from below: every component less than `limit` becomes `limit`.
    void Max(S limit);

    /// Square root of the summed squares. Integer squares are summed in 32 bits; a sum that wraps
    /// to a negative number has no root and gives NaN.
    float Length() const;

    /// Divides the vector by its length; the zero vector stays zero. Integer vectors divide by the
    /// length truncated to an integer, so (3, 4) becomes (0, 0) and (10, 0) becomes (1, 0).
    T& Normalize();

protected:
    /// S widened: what a sum of products is returned as.
    using Total = std::conditional_t<std::is_floating_point_v<S>, double, S>;

    /// Sum of the component products.
    static Total SumOfProducts(const T& a, const T& b);

    /// a * b - c * d.
    static S DifferenceOfProducts(S a, S b, S c, S d);

    /// The cross product in place, line by line: y reads the x just written and z both. That is
    /// intended: (1, 0, 0) with (0, 1, 0) gives (0, 0, 0).
    void CrossInPlace(const T& v);

private:
    friend T;
    constexpr VectorOperations() = default;

    /// Sums are formed in this type: unsigned integers wrap where signed ones would be undefined.
    using Wide = std::conditional_t<std::is_floating_point_v<S>, double, std::uint32_t>;
    /// Quotients are formed in this type: it also holds -2^31 / -1.
    using Quotient = std::conditional_t<std::is_floating_point_v<S>, double, std::int64_t>;

    static constexpr S Divide(S a, S b) {
        return static_cast<S>(static_cast<Quotient>(a) / static_cast<Quotient>(b));
    }

    constexpr T& Self() { return static_cast<T&>(*this); }
    constexpr const T& Self() const { return static_cast<const T&>(*this); }
};

/// `value` truncated toward zero; 0 when an int cannot hold it (NaN included).
inline std::int32_t TruncateToInt(double value) {
    const bool fits = value > -2147483649.0 && value < 2147483648.0;
    return fits ? static_cast<std::int32_t>(value) : 0;
}

template <class T, class S, int N>
constexpr T& VectorOperations<T, S, N>::operator+=(const T& other) {
    for (int i = 0; i < N; ++i)
        Self()[i] = static_cast<S>(static_cast<Wide>(Self()[i]) + static_cast<Wide>(other[i]));
    return Self();
}

template <class T, class S, int N>
constexpr T& VectorOperations<T, S, N>::operator-=(const T& other) {
    for (int i = 0; i < N; ++i)
        Self()[i] = static_cast<S>(static_cast<Wide>(Self()[i]) - static_cast<Wide>(other[i]));
    return Self();
}

template <class T, class S, int N>
constexpr T& VectorOperations<T, S, N>::operator*=(S scale) {
    return Self() = Self() * T(scale);
}

template <class T, class S, int N>
constexpr T VectorOperations<T, S, N>::operator*(const T& other) const {
    T product;
    for (int i = 0; i < N; ++i)
        product[i] = static_cast<S>(static_cast<Wide>(Self()[i]) * static_cast<Wide>(other[i]));
    return product;
}

template <class T, class S, int N>
constexpr T& VectorOperations<T, S, N>::operator/=(S divisor) {
    if (divisor != S{})
        for (int i = 0; i < N; ++i)
            Self()[i] = Divide(Self()[i], divisor);
    return Self();
}

template <class T, class S, int N>
constexpr T VectorOperations<T, S, N>::operator/(const T& divisor) const {
    constexpr int guarded = std::min(N, 3);
    T quotient;
    for (int i = 0; i < N; ++i) {
        if (i < guarded && divisor[i] == S{})
            return T();
        quotient[i] = Divide(Self()[i], divisor[i]);
    }
    return quotient;
}

template <class T, class S, int N>
void VectorOperations<T, S, N>::Min(S limit) {
    for (int i = 0; i < N; ++i)
        if (Self()[i] > limit)
            Self()[i] = limit;
}

template <class T, class S, int N>
void VectorOperations<T, S, N>::Max(S limit) {
    for (int i = 0; i < N; ++i)
        if (Self()[i] < limit)
            Self()[i] = limit;
}

template <class T, class S, int N>
float VectorOperations<T, S, N>::Length() const {
    return static_cast<float>(std::sqrt(static_cast<double>(SumOfProducts(Self(), Self()))));
}

template <class T, class S, int N>
T& VectorOperations<T, S, N>::Normalize() {
    if constexpr (std::is_floating_point_v<S>)
        return Self() /= Length();
    else
        return Self() /= TruncateToInt(Length());
}

template <class T, class S, int N>
auto VectorOperations<T, S, N>::SumOfProducts(const T& a, const T& b) -> Total {
    Wide sum = 0;
    for (int i = 0; i < N; ++i)
        sum += static_cast<Wide>(a[i]) * static_cast<Wide>(b[i]);
    return static_cast<Total>(sum);
}

template <class T, class S, int N>
S VectorOperations<T, S, N>::DifferenceOfProducts(S a, S b, S c, S d) {
    return static_cast<S>(static_cast<Wide>(a) * static_cast<Wide>(b) -
                          static_cast<Wide>(c) * static_cast<Wide>(d));
}

template <class T, class S, int N>
void VectorOperations<T, S, N>::CrossInPlace(const T& v) {
    T& u = Self();
    u.x = DifferenceOfProducts(u.y, v.z, u.z, v.y);
    u.y = DifferenceOfProducts(u.z, v.x, u.x, v.z);
    u.z = DifferenceOfProducts(u.x, v.y, u.y, v.x);
}

/// vec2, vec3 or vec4.
template <class T>
concept FloatVector = std::is_base_of_v<VectorOperations<T, float, sizeof(T) / sizeof(float)>, T>;

/// Root of Dot(v, v), in float: 0 or infinite where the squares leave float's range, which the
/// member Length() does not.
template <FloatVector T>
inline float Length(const T& v) {
    return std::sqrt(Dot(v, v));
}

/// v through Length(v); the zero vector stays zero.
template <FloatVector T>
inline T Normalized(const T& v) {
    return v / Length(v);
}

/// a at t = 0 and b at t = 1 on the straight line through both; t is not clamped.
template <FloatVector T>
constexpr T Lerp(const T& a, const T& b, float t) {
    return a + (b - a) * t;
}

} // namespace Vell
