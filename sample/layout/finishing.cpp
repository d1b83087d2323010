#include "layout/finishing.h"

#include "layout/imposition.h"

namespace pmx::sample {

namespace {

constexpr int StapleLength = 120;
constexpr int StapleFromEdge = 60;
constexpr int HoleFromEdge = 120;

Edge Mirrored(Edge edge, bool back) {
    if (!back || edge == Edge::Top) {
        return edge;
    }
    return edge == Edge::Left ? Edge::Right : Edge::Left;
}

/// A place so far along an edge and so far from it.
Point FromEdge(Edge edge, int along, int away, const Extent& paper) {
    switch (edge) {
    case Edge::Right:
        return {paper.Width - away, along};
    case Edge::Top:
        return {along, away};
    default:
        return {away, along};
    }
}

int LengthOf(Edge edge, const Extent& paper) {
    return edge == Edge::Top ? paper.Width : paper.Height;
}

Segment StapleAlong(Edge edge, int along, const Extent& paper) {
    return {FromEdge(edge, along - StapleLength / 2, StapleFromEdge, paper),
            FromEdge(edge, along + StapleLength / 2, StapleFromEdge, paper)};
}

std::vector<Segment> TwoStaples(Edge edge, const Extent& paper) {
    const int length = LengthOf(edge, paper);
    return {StapleAlong(edge, length / 4, paper), StapleAlong(edge, length * 3 / 4, paper)};
}

/// A staple across an upper corner.
Segment CornerStaple(Edge side, const Extent& paper) {
    constexpr int Near = 70;
    constexpr int Far = 155;
    return {FromEdge(side, Far, Near, paper), FromEdge(side, Near, Far, paper)};
}

std::vector<Segment> SaddleStaples(const Extent& paper) {
    const auto staple = [&paper](int along) {
        return Segment{{paper.Width / 2, along - StapleLength / 2},
                       {paper.Width / 2, along + StapleLength / 2}};
    };
    return {staple(paper.Height / 4), staple(paper.Height * 3 / 4)};
}

std::vector<Segment> StaplesOn(bool back, const Extent& paper, const AttributeTable& table) {
    switch (table.Document.StaplePlace.Get()) {
    case Staple::UpperLeft:
        return {CornerStaple(Mirrored(Edge::Left, back), paper)};
    case Staple::UpperRight:
        return {CornerStaple(Mirrored(Edge::Right, back), paper)};
    case Staple::TwoLeft:
        return TwoStaples(Mirrored(Edge::Left, back), paper);
    case Staple::TwoRight:
        return TwoStaples(Mirrored(Edge::Right, back), paper);
    case Staple::TwoTop:
        return TwoStaples(Edge::Top, paper);
    case Staple::Saddle:
        return SaddleStaples(paper);
    default:
        return {};
    }
}

std::vector<Point> HolesOn(Edge edge, const Extent& paper, Punch kind) {
    int count = 0;
    int distance = 800;
    switch (kind) {
    case Punch::TwoHoles:
        count = 2;
        break;
    case Punch::ThreeHoles:
        count = 3;
        distance = 1080;
        break;
    case Punch::FourHoles:
        count = 4;
        break;
    default:
        return {};
    }
    const int length = LengthOf(edge, paper);
    if (distance * (count - 1) > length - 200) {
        distance = (length - 200) / (count - 1); // Small paper: as far apart as fits.
    }
    std::vector<Point> holes;
    holes.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        holes.push_back(
            FromEdge(edge, length / 2 + (index * 2 - count + 1) * distance / 2, HoleFromEdge, paper));
    }
    return holes;
}

/// A fold across the longer side, so many hundredths of the way from its left or upper end.
Segment FoldAt(int hundredths, const Extent& paper) {
    if (paper.Width >= paper.Height) {
        const int x = paper.Width * hundredths / 100;
        return {{x, 0}, {x, paper.Height}};
    }
    const int y = paper.Height * hundredths / 100;
    return {{0, y}, {paper.Width, y}};
}

std::vector<Segment> FoldsOn(const Extent& paper, const AttributeTable& table) {
    if (IsBooklet(table)) {
        return {FoldAt(50, paper)};
    }
    switch (table.Document.Folding.Get()) {
    case Fold::Half:
        return {FoldAt(50, paper)};
    case Fold::ThreeFold:
        return {FoldAt(33, paper), FoldAt(67, paper)};
    case Fold::ZFold:
        return {FoldAt(50, paper), FoldAt(75, paper)};
    default:
        return {};
    }
}

bool IsBound(const AttributeTable& table) {
    return table.Document.StaplePlace != Staple::None || table.Document.PunchHoles != Punch::None ||
           table.Face.Gutter != 0;
}

} // namespace

Edge BindingOn(bool back, const AttributeTable& table) {
    return Mirrored(table.Document.Binding, back);
}

void AddFinishing(FaceLayout& face, bool back, const Extent& paper, const AttributeTable& table) {
    const Edge edge = BindingOn(back, table);
    face.Staples = StaplesOn(back, paper, table);
    face.Folds = FoldsOn(paper, table);
    if (IsBooklet(table)) {
        return;
    }
    face.Holes = HolesOn(edge, paper, table.Document.PunchHoles);
    if (IsBound(table)) {
        face.BoundEdge =
            Segment{FromEdge(edge, 0, 0, paper), FromEdge(edge, LengthOf(edge, paper), 0, paper)};
    }
}

} // namespace pmx::sample
