#include "cameramodels.h"

#include <QPair>
#include <QRegularExpression>
#include <QVector>

bool IsCameraModelCompatible(const QString& model, QString& family)
{
    // Several patterns are anchored at the start only, so that any suffix is accepted.
    static const QVector<QPair<QString, QRegularExpression>> kPatterns = {
        {QStringLiteral("kvd"), QRegularExpression(QStringLiteral("^kvd\\d{3}[MC](XGE|25GE|100GE_RDMA|CX)"))},
        {QStringLiteral("tb"), QRegularExpression(QStringLiteral("^tb\\d+[MC](CX|100GE_RDMA)"))},
        {QStringLiteral("pmq"), QRegularExpression(QStringLiteral("^pmq\\d+[MC]CX$"))},
        {QStringLiteral("Vetrix"), QRegularExpression(QStringLiteral("^Vetrix[\\d.]+[MC]CX12$"))},
        {QStringLiteral("T-Z826"), QRegularExpression(QStringLiteral("^T-Z826(-C)?$"))},
        {QStringLiteral("QD"), QRegularExpression(QStringLiteral("^QD-\\d+M$"))},
        {QStringLiteral("Tessaline"), QRegularExpression(QStringLiteral("^Tessaline-FCX"))},
        {QStringLiteral("QD3"), QRegularExpression(QStringLiteral("^QD3-"))},
        {QStringLiteral("ryn"), QRegularExpression(QStringLiteral("^ryn"))},
        {QStringLiteral("gal"), QRegularExpression(QStringLiteral("^gal"))},
        {QStringLiteral("DW-NR"), QRegularExpression(QStringLiteral("^DW-NR"))},
    };
    for (const auto& pattern : kPatterns) {
        if (pattern.second.match(model).hasMatch()) {
            family = pattern.first;
            return true;
        }
    }
    family.clear();
    return false;
}
