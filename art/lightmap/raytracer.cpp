#include "art/lightmap/raytracer.h"

#include <cstring>

#include <embree3/rtcore.h>

namespace Art {

struct RayTracer::Impl {
    RTCDevice device = nullptr;
    RTCScene scene = nullptr;
};

namespace {

void AttachTriangles(RTCDevice device, RTCScene scene, const std::vector<vec3>& corners) {
    RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
    void* vertices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                             sizeof(vec3), corners.size());
    std::memcpy(vertices, corners.data(), corners.size() * sizeof(vec3));
    auto* indices = static_cast<unsigned*>(
        rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                3 * sizeof(unsigned), corners.size() / 3));
    for (unsigned i = 0; i < corners.size(); ++i)
        indices[i] = i;
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene, geometry);
    rtcReleaseGeometry(geometry);
}

RTCRay MakeRay(vec3 origin, vec3 direction, float reach) {
    RTCRay ray{};
    ray.org_x = origin.x;
    ray.org_y = origin.y;
    ray.org_z = origin.z;
    ray.dir_x = direction.x;
    ray.dir_y = direction.y;
    ray.dir_z = direction.z;
    ray.tnear = 0;
    ray.tfar = reach;
    ray.mask = ~0U;
    return ray;
}

} // namespace

RayTracer::RayTracer(const std::vector<vec3>& corners) : impl(std::make_unique<Impl>()) {
    // One building thread: the tree, and with it every tie between equal distances, is then
    // the same on every machine.
    impl->device = rtcNewDevice("threads=1");
    impl->scene = rtcNewScene(impl->device);
    rtcSetSceneFlags(impl->scene, RTC_SCENE_FLAG_ROBUST);
    rtcSetSceneBuildQuality(impl->scene, RTC_BUILD_QUALITY_HIGH);
    if (!corners.empty())
        AttachTriangles(impl->device, impl->scene, corners);
    rtcCommitScene(impl->scene);
}

RayTracer::~RayTracer() {
    rtcReleaseScene(impl->scene);
    rtcReleaseDevice(impl->device);
}

bool RayTracer::Closest(vec3 origin, vec3 direction, float reach, Hit& hit) const {
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    RTCRayHit query{};
    query.ray = MakeRay(origin, direction, reach);
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    rtcIntersect1(impl->scene, &context, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return false;
    hit = {query.ray.tfar, static_cast<int>(query.hit.primID), query.hit.u, query.hit.v};
    return true;
}

bool RayTracer::Blocked(vec3 origin, vec3 direction, float reach) const {
    // Embree answers with a negative reach, so it must not be asked with one.
    if (reach <= 0)
        return false;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    RTCRay ray = MakeRay(origin, direction, reach);
    rtcOccluded1(impl->scene, &context, &ray);
    return ray.tfar < 0;
}

} // namespace Art
