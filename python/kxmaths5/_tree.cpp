/*
 * A mesh's triangles in a hierarchy of boxes, for Python: many rays in one call. _mesh.py has made
 * everything contiguous and of the right type, and keeps the arrays alive.
 */
#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "hierarchy.h"

#include <exception>
#include <memory>
#include <vector>

namespace
{

constexpr const char *capsule_name = "kxmaths5 tree";

struct Tree {
    std::vector<KXTriangle> triangles;
    std::vector<KXP3> vertices;
    example::Hierarchy hierarchy;

    Tree(const Py_buffer &words, const Py_buffer &points, float reach)
        : triangles(copy<KXTriangle>(words)), vertices(copy<KXP3>(points)),
          hierarchy(triangles, vertices, reach)
    {
    }

    template <typename Record>
    static std::vector<Record> copy(const Py_buffer &buffer)
    {
        const auto *const from = static_cast<const Record *>(buffer.buf);
        return {from, from + static_cast<size_t>(buffer.len) / sizeof(Record)};
    }
};

/** Memory of an array that is given back at the end. */
struct Buffer {
    Py_buffer view{};
    ~Buffer()
    {
        PyBuffer_Release(&view);
    }
    template <typename Record>
    Record *records()
    {
        return static_cast<Record *>(view.buf);
    }
};

Tree *tree_of(PyObject *capsule)
{
    return static_cast<Tree *>(PyCapsule_GetPointer(capsule, capsule_name));
}

void destroy(PyObject *capsule)
{
    delete tree_of(capsule);
}

PyObject *build(PyObject *, PyObject *arguments)
{
    Buffer triangles, vertices;
    float reach;
    if (!PyArg_ParseTuple(arguments, "y*y*f", &triangles.view, &vertices.view, &reach)) {
        return nullptr;
    }
    std::unique_ptr<Tree> tree;
    Py_BEGIN_ALLOW_THREADS;
    try {
        tree = std::make_unique<Tree>(triangles.view, vertices.view, reach);
    } catch (const std::exception &) {
        tree.reset();
    }
    Py_END_ALLOW_THREADS;
    if (!tree) {
        return PyErr_NoMemory();
    }
    PyObject *const capsule = PyCapsule_New(tree.get(), capsule_name, destroy);
    if (capsule) {
        tree.release();
    }
    return capsule;
}

/** For each ray the nearest triangle, or -1, and where it is hit. */
PyObject *nearest(PyObject *, PyObject *arguments)
{
    PyObject *capsule;
    Buffer rays, triangles, points;
    if (!PyArg_ParseTuple(arguments, "Oy*w*w*", &capsule, &rays.view, &triangles.view,
                          &points.view)) {
        return nullptr;
    }
    const Tree *const tree = tree_of(capsule);
    if (!tree) {
        return nullptr;
    }
    const Py_ssize_t count = rays.view.len / static_cast<Py_ssize_t>(sizeof(KXRay));
    Py_BEGIN_ALLOW_THREADS;
    for (Py_ssize_t i = 0; i < count; ++i) {
        const auto hit = tree->hierarchy.nearest(rays.records<KXRay>()[i]);
        triangles.records<long long>()[i] = hit ? static_cast<long long>(hit->triangle) : -1;
        if (hit) {
            points.records<KXP3>()[i] = hit->point;
        }
    }
    Py_END_ALLOW_THREADS;
    Py_RETURN_NONE;
}

/** For each line or ray whether any triangle is in its way. */
template <typename Path, typename Search>
PyObject *verdicts(PyObject *arguments, Search search)
{
    PyObject *capsule;
    Buffer paths, verdicts;
    if (!PyArg_ParseTuple(arguments, "Oy*w*", &capsule, &paths.view, &verdicts.view)) {
        return nullptr;
    }
    const Tree *const tree = tree_of(capsule);
    if (!tree) {
        return nullptr;
    }
    const Py_ssize_t count = paths.view.len / static_cast<Py_ssize_t>(sizeof(Path));
    Py_BEGIN_ALLOW_THREADS;
    for (Py_ssize_t i = 0; i < count; ++i) {
        verdicts.records<bool>()[i] = search(tree->hierarchy, paths.records<Path>()[i]);
    }
    Py_END_ALLOW_THREADS;
    Py_RETURN_NONE;
}

PyObject *blocked(PyObject *, PyObject *arguments)
{
    return verdicts<KXLine>(arguments, [](const example::Hierarchy &hierarchy, const KXLine &line) {
        return hierarchy.is_blocked(line);
    });
}

PyObject *met(PyObject *, PyObject *arguments)
{
    return verdicts<KXRay>(arguments, [](const example::Hierarchy &hierarchy, const KXRay &ray) {
        return hierarchy.is_met(ray);
    });
}

} // namespace

PyMODINIT_FUNC PyInit__tree(void)
{
    static PyMethodDef methods[] = {
        {"build", build, METH_VARARGS, "A tree of triangles."},
        {"nearest", nearest, METH_VARARGS, "The nearest triangle for each ray."},
        {"blocked", blocked, METH_VARARGS, "Whether each line is blocked."},
        {"met", met, METH_VARARGS, "Whether each ray meets a triangle."},
        {nullptr, nullptr, 0, nullptr}};
    static PyModuleDef definition = {
        PyModuleDef_HEAD_INIT, "_tree", nullptr, -1, methods, nullptr, nullptr, nullptr, nullptr};
    return PyModule_Create(&definition);
}
